#include "ScopeFromText.h"

#include <gtest/gtest.h>

namespace kelvane::settings {
namespace {

const SettingOrigin kProject{"App.xcodeproj/project.pbxproj", 0, "project"};

std::vector<Assignment> pushed(std::vector<plist::DictionaryEntry> entries) {
    std::vector<Assignment> stack;
    appendBuildSettings(stack, plist::Dictionary(std::move(entries)), kProject);
    return stack;
}

struct OrderCase {
    const char* name;
    std::string sdk;
    std::string expected;
};

class DictionaryOrder : public ::testing::TestWithParam<OrderCase> {};

TEST_P(DictionaryOrder, ConditionalKeysFollowThePlainOne) {
    // Document order puts the conditional keys first; byte order does not.
    const SettingsScope scope(pushed({{"FOO[sdk=macosx*]", "macos_$(inherited)"},
                                      {"FOO[config=Debug]", "debug_$(inherited)"},
                                      {"FOO", "project-$(inherited)"}}),
                              {{"sdk", GetParam().sdk}, {"config", "Debug"}});
    EXPECT_EQ(scope.evaluate("FOO").value, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, DictionaryOrder,
    ::testing::Values(OrderCase{"sdkKeyIsGreatest", "macosx15.2", "macos_debug_project-"},
                      OrderCase{"onlyConfigMatches", "iphoneos18.2", "debug_project-"}),
    [](const auto& entry) { return std::string(entry.param.name); });

TEST(DictionaryOrder, DropsInvalidNamesAndNonText) {
    plist::Dictionary nested;
    nested.insert("x", plist::Value("y"));
    const auto stack = pushed({{"FOO BAR", "1"},
                               {"FOO-BAR", "2"},
                               {"1FOO", "3"},
                               {"FOO[sdk=x", "4"},
                               {"SDKROOT[sdk=iphoneos*]", "iphoneos"},
                               {"NUMBER", plist::Value(std::int64_t{5})},
                               {"NESTED", plist::Value(nested)},
                               {"_GOOD1", "ok"}});
    ASSERT_EQ(stack.size(), 1u);
    EXPECT_EQ(stack[0].name, "_GOOD1");
    EXPECT_EQ(stack[0].origin, kProject);
}

TEST(DictionaryOrder, JoinsArraysEscapingEachElement) {
    const auto stack = pushed({{"OTHER_LDFLAGS", plist::Array{"-framework", "My App", "a\"b\\c",
                                                              plist::Value(1.5), "'q'"}}});
    ASSERT_EQ(stack.size(), 1u);
    EXPECT_EQ(stack[0].value, "-framework My\\ App a\\\"b\\\\c \\'q\\'");
}

} // namespace
} // namespace kelvane::settings
