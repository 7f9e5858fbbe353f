#include "ScopeFromText.h"

#include <gtest/gtest.h>

#include <chrono>

namespace kelvane::settings {
namespace {

using testing::assignment;
using testing::shown;

plist::Dictionary dictionary(std::vector<std::pair<std::string, std::string>> entries) {
    plist::Dictionary result;
    for (auto& [key, value] : entries) {
        result.insert(key, plist::Value(value));
    }
    return result;
}

std::vector<Assignment> xcconfig(std::string_view text, std::string level) {
    return parseXcconfig(text, level + ".xcconfig", level, "/project").assignments;
}

// Project xcconfig, project settings, target xcconfig, target settings.
std::vector<Assignment> levels(std::string_view projectXcconfig, const plist::Dictionary& project,
                               std::string_view targetXcconfig, const plist::Dictionary& target) {
    auto stack = xcconfig(projectXcconfig, "project xcconfig");
    appendBuildSettings(stack, project, {"project.pbxproj", 0, "project"});
    for (auto& a : xcconfig(targetXcconfig, "target xcconfig")) {
        stack.push_back(std::move(a));
    }
    appendBuildSettings(stack, target, {"project.pbxproj", 0, "target"});
    return stack;
}

TEST(SettingLevels, InheritedChainsEveryLevel) {
    const SettingsScope scope(
        levels("OTHER_LDFLAGS = -lz", dictionary({{"OTHER_LDFLAGS", "$(inherited) -ObjC"}}),
               "OTHER_LDFLAGS = $(inherited) -lc++",
               dictionary({{"OTHER_LDFLAGS", "$(inherited) -framework UIKit"}})),
        {});
    const Resolved flags = scope.evaluate("OTHER_LDFLAGS");
    EXPECT_EQ(flags.value, "-lz -ObjC -lc++ -framework UIKit");
    EXPECT_EQ(flags.origin, (SettingOrigin{"project.pbxproj", 0, "target"}));
}

TEST(SettingLevels, ReferencesBindLateInTheWholeStack) {
    std::vector<Assignment> stack{
        assignment("PRODUCT_BUNDLE_IDENTIFIER", "com.acme.$(TARGET_NAME)"),
        assignment("TARGET_NAME", "Widget")};
    EXPECT_EQ(SettingsScope(stack, {}).evaluate("PRODUCT_BUNDLE_IDENTIFIER").value,
              "com.acme.Widget");
}

TEST(SettingLevels, UnassignedSettingIsEmptyAndNotAssigned) {
    const Resolved missing = SettingsScope({}, {}).evaluate("DEVELOPMENT_TEAM");
    EXPECT_EQ(missing, Resolved{});
    const Resolved empty =
        SettingsScope({assignment("DEVELOPMENT_TEAM", "")}, {}).evaluate("DEVELOPMENT_TEAM");
    EXPECT_TRUE(empty.assigned);
    EXPECT_EQ(empty.value, "");
}

struct ConditionCase {
    const char* name;
    std::string conditions;
    bool matches;
};

class ConditionMatching : public ::testing::TestWithParam<ConditionCase> {};

TEST_P(ConditionMatching, AgainstAnIosDebugBuildWithoutArch) {
    const SettingsScope scope =
        testing::scopeOf("A = plain\nA" + GetParam().conditions + " = conditional",
                         {{"config", "Debug"}, {"sdk", "iphoneos18.2"}});
    EXPECT_EQ(scope.evaluate("A").value, GetParam().matches ? "conditional" : "plain");
}

INSTANTIATE_TEST_SUITE_P(
    Table, ConditionMatching,
    ::testing::Values(ConditionCase{"sdkPrefix", "[sdk=iphoneos*]", true},
                      ConditionCase{"sdkWithoutVersion", "[sdk=iphoneos]", false},
                      ConditionCase{"otherSdk", "[sdk=iphonesimulator*]", false},
                      ConditionCase{"configPattern", "[config=D*]", true},
                      ConditionCase{"caseSensitive", "[config=debug]", false},
                      ConditionCase{"unboundArch", "[arch=arm64]", false},
                      ConditionCase{"unboundStar", "[arch=*]", true},
                      ConditionCase{"typoParameter", "[compiler=*gcc]", false},
                      ConditionCase{"blanksAreVerbatim", "[sdk = iphoneos*]", false},
                      ConditionCase{"commaIsNoSeparator", "[sdk=iphoneos*,config=Debug]", false},
                      ConditionCase{"allMatch", "[sdk=iphoneos*][config=Debug]", true},
                      ConditionCase{"oneFails", "[sdk=iphoneos*][config=Release]", false}),
    [](const auto& entry) { return std::string(entry.param.name); });

struct PatternCase {
    const char* name;
    std::string pattern;
    std::string text;
    bool matches;
};

class PatternMatching : public ::testing::TestWithParam<PatternCase> {};

TEST_P(PatternMatching, FollowsFnmatch) {
    EXPECT_EQ(patternMatches(GetParam().pattern, GetParam().text), GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(
    Table, PatternMatching,
    ::testing::Values(PatternCase{"star", "*", "", true},
                      PatternCase{"question", "macosx1?.2", "macosx15.2", true},
                      PatternCase{"backtracking", "a*b*c", "aXbYbZc", true},
                      PatternCase{"range", "arm[0-9]*", "arm64", true},
                      PatternCase{"negatedRange", "x86_[!0-9]*", "x86_64", false},
                      PatternCase{"unclosedBracketIsLiteral", "a[b", "a[b", true},
                      PatternCase{"escapedStar", "a\\*", "a*", true},
                      PatternCase{"escapedStarIsNotWild", "a\\*", "ab", false}),
    [](const auto& entry) { return std::string(entry.param.name); });

TEST(PatternMatching, ManyStarsStayFast) {
    const std::string text(20'000, 'a');
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(patternMatches("*a*a*a*a*a*a*a*a*b", text));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

} // namespace
} // namespace kelvane::settings
