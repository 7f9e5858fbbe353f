#include "ScopeFromText.h"

#include <gtest/gtest.h>

#include <chrono>

namespace kelvane::settings {
namespace {

using testing::assignment;
using testing::numbered;
using testing::scopeOf;
using testing::shown;

struct ReferenceCase {
    const char* name;
    std::string text;
    std::string expected;
};

class References : public ::testing::TestWithParam<ReferenceCase> {};

TEST_P(References, ExpandAsXcodeDoes) {
    const SettingsScope scope({assignment("A", "a"), assignment("B", "b"), assignment("A_b", "ab"),
                               assignment("HOME", "/Users/me"), assignment("FOO BAR", "spaced"),
                               assignment("EMPTY", "")},
                              {});
    EXPECT_EQ(shown(scope.expand(GetParam().text)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, References,
    ::testing::Values(ReferenceCase{"parentheses", "x$(A)y", "xay"},
                      ReferenceCase{"braces", "${A}", "a"}, ReferenceCase{"brackets", "$[A]", "a"},
                      ReferenceCase{"doubleDollar", "$$(A) $$", "$(A) $"},
                      ReferenceCase{"bare", "$HOME/x", "/Users/me/x"},
                      ReferenceCase{"bareTakesDots", "$A.app", "$A.app"},
                      ReferenceCase{"bareAssignedEmpty", "[$EMPTY]", "[]"},
                      ReferenceCase{"dollarBeforeOther", "$1 $ $", "$1 $ $"},
                      ReferenceCase{"nested", "$(A_$(B))", "ab"},
                      ReferenceCase{"nestedMixedBrackets", "$(A_${B})", "ab"},
                      ReferenceCase{"nameWithBlank", "$(FOO BAR)", "spaced"},
                      ReferenceCase{"undefinedIsEmpty", "<$(NOPE)>", "<>"},
                      ReferenceCase{"unclosedStaysLiteral", "x $(A", "x $(A"},
                      ReferenceCase{"inheritedOutsideSetting", "<$(inherited)>", "<>"}),
    [](const auto& entry) { return std::string(entry.param.name); });

struct CycleCase {
    const char* name;
    std::string text;
    std::string setting;
    std::string expected;
};

class Cycles : public ::testing::TestWithParam<CycleCase> {};

TEST_P(Cycles, ResolveToTheNextLowerValue) {
    EXPECT_EQ(shown(scopeOf(GetParam().text).evaluate(GetParam().setting)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Cycles,
    ::testing::Values(
        CycleCase{"selfReference", "A = x\nA = $(A) y", "A", "x y"},
        CycleCase{"valueSynonym", "A = x\nA = $(value) y", "A", "x y"},
        CycleCase{"bareSelfReference", "A = x\nA = $A y", "A", "x y"},
        CycleCase{"selfAtBottom", "A = <$(A)>", "A", "<>"},
        CycleCase{"twoNamesNothingLower", "A = $(B)\nB = $(A)", "A", ""},
        CycleCase{"throughOtherName", "A = x\nA = $(B)\nB = $(A) y", "A", "x y"},
        CycleCase{"otherNameSeesTopOfFirst", "A = x\nA = $(B)\nB = $(A) y", "B", " y"},
        CycleCase{"inheritedOfReferencedName", "A = $(B)\nB = 1\nB = $(inherited)2", "A", "12"},
        CycleCase{"threeNames", "A = a\nA = $(B)\nB = $(C)\nC = $(A)!", "A", "a!"},
        // One setting reached twice in one evaluation, once inside a cycle:
        // the first result must not be reused for the second.
        CycleCase{"valueReadInsideCycleNotReused", "A = $(B)$(C)\nB = [$(C)]\nC = c0\nC = <$(B)>",
                  "A", "[<>]<[c0]>"},
        CycleCase{"valueCutByOuterCycleNotReused", "X = $(B)$(C)\nB = <$(C)>\nC = [$(B)]", "X",
                  "<[]>[<>]"}),
    [](const auto& entry) { return std::string(entry.param.name); });

// A = $(B)$(B), B = $(C)$(C), ... doubles at every level.
std::vector<Assignment> doublingChain(int levels, std::string bottom) {
    std::vector<Assignment> stack;
    for (int i = 0; i < levels; ++i) {
        const std::string next = numbered("$(L", i + 1, ")");
        stack.push_back(assignment(numbered("L", i), next + next));
    }
    stack.push_back(assignment(numbered("L", levels), std::move(bottom)));
    return stack;
}

TEST(ReferenceBounds, DoublingChainFinishesFast) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(shown(SettingsScope(doublingChain(40, ""), {}).evaluate("L0")), "");
    EXPECT_EQ(shown(SettingsScope(doublingChain(40, "x"), {}).evaluate("L0")),
              "unknown: its expansion is longer than 1 MiB");
    EXPECT_EQ(SettingsScope(doublingChain(10, "x"), {}).evaluate("L0").value,
              std::string(1024, 'x'));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST(ReferenceBounds, ManyReferencesToALargeValueHitTheWorkBound) {
    std::string many;
    for (int i = 0; i < 2000; ++i) {
        many += "$(BIG:suffix)";
    }
    const SettingsScope scope({assignment("BIG", std::string(100'000, 'b')), assignment("A", many)},
                              {});
    EXPECT_EQ(shown(scope.evaluate("A")),
              "unknown: its expansion reads more than 64 MiB of values");
}

TEST(ReferenceBounds, ChainsDeeperThanTheBoundAreUnknown) {
    std::vector<Assignment> stack;
    for (int i = 0; i < 300; ++i) {
        stack.push_back(assignment(numbered("C", i), numbered("$(C", i + 1, ")")));
    }
    stack.push_back(assignment("C300", "end"));
    const SettingsScope scope(stack, {});
    EXPECT_EQ(scope.evaluate("C100").value, "end");
    EXPECT_EQ(shown(scope.evaluate("C0")), "unknown: its references nest deeper than 256 levels");
}

TEST(ReferenceBounds, TextualNestingIsBounded) {
    std::string text;
    for (int i = 0; i < 100'000; ++i) {
        text += "$(";
    }
    EXPECT_EQ(shown(SettingsScope({}, {}).expand(text)),
              "unknown: its references nest deeper than 256 levels");
}

TEST(Expand, UsesExtraValuesAndReportsTheFirstOrigin) {
    Assignment id = assignment("PRODUCT_BUNDLE_IDENTIFIER", "com.acme.app");
    id.origin = {"App.xcconfig", 3, "target xcconfig"};
    const SettingsScope scope({id}, {});
    const Resolved resolved =
        scope.expand("$(CFBundleIdentifier) / $(PRODUCT_BUNDLE_IDENTIFIER)",
                     {{"CFBundleIdentifier", "$(literal)"}, {"PRODUCT_BUNDLE_IDENTIFIER", "no"}});
    EXPECT_EQ(resolved.value, "$(literal) / com.acme.app");
    EXPECT_EQ(resolved.origin, id.origin);
    EXPECT_TRUE(resolved.assigned);

    const Resolved plain = scope.expand("no references");
    EXPECT_EQ(plain.value, "no references");
    EXPECT_FALSE(plain.assigned);
    EXPECT_FALSE(plain.origin);
}

} // namespace
} // namespace kelvane::settings
