#include "ScopeFromText.h"

#include <gtest/gtest.h>

namespace kelvane::settings {
namespace {

using testing::assignment;
using testing::shown;

Assignment placeholder(std::string reason, bool sparesIdentity = false, std::string name = {}) {
    Assignment result;
    result.name = std::move(name);
    result.unknownReason = std::move(reason);
    result.sparesIdentity = sparesIdentity;
    result.origin = {"Main.xcconfig", 2, "target xcconfig"};
    return result;
}

Assignment builtIn(std::string name, std::string value) {
    Assignment result = assignment(std::move(name), std::move(value));
    result.builtIn = true;
    return result;
}

struct UnknownCase {
    const char* name;
    std::vector<Assignment> stack;
    std::string setting;
    std::string expected;
};

class UnknownValues : public ::testing::TestWithParam<UnknownCase> {};

TEST_P(UnknownValues, PropagateFromPlaceholders) {
    EXPECT_EQ(shown(SettingsScope(GetParam().stack, {}).evaluate(GetParam().setting)),
              GetParam().expected);
}

const std::string kSecrets = "Secrets.xcconfig is not in the repository";

INSTANTIATE_TEST_SUITE_P(
    Table, UnknownValues,
    ::testing::Values(
        UnknownCase{"placeholderWins",
                    {assignment("A", "x"), placeholder(kSecrets)},
                    "A",
                    "unknown: " + kSecrets},
        UnknownCase{
            "placeholderCoversUnassigned", {placeholder(kSecrets)}, "ANY", "unknown: " + kSecrets},
        UnknownCase{"assignmentAboveWins", {placeholder(kSecrets), assignment("A", "x")}, "A", "x"},
        UnknownCase{"inheritedReachesIt",
                    {placeholder(kSecrets), assignment("A", "$(inherited) x")},
                    "A",
                    "unknown: " + kSecrets},
        UnknownCase{"throughReferenceAndOperator",
                    {placeholder(kSecrets), assignment("A", "id.$(B:lower)")},
                    "A",
                    "unknown: " + kSecrets},
        UnknownCase{
            "unusedDefaultOperandIgnored",
            {placeholder(kSecrets), assignment("B", "b"), assignment("A", "$(B:default=$(C))")},
            "A",
            "b"},
        UnknownCase{"podsSpareIdentity",
                    {assignment("PRODUCT_BUNDLE_IDENTIFIER", "com.a"), placeholder("pods", true)},
                    "PRODUCT_BUNDLE_IDENTIFIER",
                    "com.a"},
        UnknownCase{"podsCoverOtherSettings",
                    {assignment("OTHER_LDFLAGS", "-lz"), placeholder("pods", true)},
                    "OTHER_LDFLAGS",
                    "unknown: pods"},
        UnknownCase{"podsCoverReferencedSettings",
                    {placeholder("pods", true), assignment("PRODUCT_NAME", "$(TARGET_NAME)")},
                    "PRODUCT_NAME",
                    "unknown: pods"},
        UnknownCase{"namedPlaceholderCoversItsName",
                    {assignment("A", "x"), placeholder("one", false, "B"), assignment("C", "$(A)")},
                    "C",
                    "x"},
        UnknownCase{"builtInNeverCovered",
                    {builtIn("TARGET_NAME", "App"), placeholder(kSecrets),
                     assignment("PRODUCT_NAME", "$(TARGET_NAME)")},
                    "PRODUCT_NAME",
                    "App"},
        UnknownCase{
            "namedPlaceholderItself", {placeholder("one", false, "B")}, "B", "unknown: one"}),
    [](const auto& entry) { return std::string(entry.param.name); });

TEST(UnknownValues, KeepTheWinningOrigin) {
    const Resolved resolved = SettingsScope({placeholder(kSecrets)}, {}).evaluate("A");
    EXPECT_TRUE(resolved.assigned);
    EXPECT_EQ(resolved.origin, (SettingOrigin{"Main.xcconfig", 2, "target xcconfig"}));
}

TEST(UnknownValues, ExtraValuesWinOverPlaceholders) {
    const SettingsScope scope({placeholder(kSecrets)}, {});
    EXPECT_EQ(shown(scope.expand("$(CFBundleIdentifier)", {{"CFBundleIdentifier", "com.a"}})),
              "com.a");
    EXPECT_EQ(shown(scope.expand("$(CFBundleIdentifier).$(X)", {{"CFBundleIdentifier", "com.a"}})),
              "unknown: " + kSecrets);
}

} // namespace
} // namespace kelvane::settings
