#include "ScopeFromText.h"

#include <gtest/gtest.h>

namespace kelvane::settings {
namespace {

using testing::parse;
using testing::scopeOf;
using testing::shown;

struct SyntaxCase {
    const char* name;
    std::string text;
    std::string setting;
    std::string expected;
};

class XcconfigSyntax : public ::testing::TestWithParam<SyntaxCase> {};

TEST_P(XcconfigSyntax, GivesTheValueXcodeReads) {
    const SyntaxCase& c = GetParam();
    EXPECT_EQ(shown(scopeOf(c.text, {{"config", "Debug"}}).evaluate(c.setting)), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, XcconfigSyntax,
    ::testing::Values(
        SyntaxCase{"blanksAround", "   A   =   b c  ", "A", "b c"},
        SyntaxCase{"byteOrderMark",
                   "\xEF\xBB\xBF"
                   "A = b",
                   "A", "b"},
        SyntaxCase{"semicolonDropped", "A = b ;", "A", "b"},
        SyntaxCase{"oneSemicolonOnly", "A = b;;", "A", "b;"},
        SyntaxCase{"commentInsideValue", "URL = https://x.com", "URL", "https:"},
        SyntaxCase{"commentInsideQuotes", "A = \"a//b\"", "A", "\"a"},
        SyntaxCase{"emptyReferenceSplitsSlashes", "URL = https:/$()/x.com", "URL", "https://x.com"},
        SyntaxCase{"quotesKept", "ID = \"com.a.b\"", "ID", "\"com.a.b\""},
        SyntaxCase{"continuation", "A = a \\\n   b   \nB = c", "A", "a b"},
        SyntaxCase{"continuationSwallowsDirective", "A = a \\\n#include \"x\"", "A",
                   "a #include \"x\""},
        SyntaxCase{"carriageReturns", "A = 1\rB = 2\r\nC = 3", "B", "2"},
        SyntaxCase{"lineSeparator",
                   "A = 1\xE2\x80\xA8"
                   "B = 2\xE2\x80\xA9"
                   "C = 3",
                   "C", "3"},
        SyntaxCase{"lastWins", "A = x\nA = y", "A", "y"},
        SyntaxCase{"inheritedSeesEarlierLine", "A = x\nA = $(inherited) y", "A", "x y"},
        SyntaxCase{"emptyShadows", "A = x\nA =", "A", ""},
        SyntaxCase{"fileOrderNotSpecificity", "A[config=Debug] = d\nA = u", "A", "u"},
        SyntaxCase{"laterConditionalWins", "A = u\nA[config=Debug] = d", "A", "d"},
        SyntaxCase{"blanksBetweenConditions", "A = u\nA [config=Debug]  [sdk=*] = d", "A", "d"},
        SyntaxCase{"badLineSkippedRestApplies", "A = 1\n1A = 2\nB = $(A)", "B", "1"}),
    [](const auto& entry) { return std::string(entry.param.name); });

TEST(XcconfigSyntax, OriginIsTheLineWhereTheAssignmentStarts) {
    const auto contents = parse("// head\n\n \tA = a \\\n b\nB = c");
    ASSERT_EQ(contents.assignments.size(), 2u);
    EXPECT_EQ(contents.assignments[0].origin,
              (SettingOrigin{"/project/Config.xcconfig", 3, "target xcconfig", 3}));
    EXPECT_EQ(contents.assignments[1].origin.line, 5u);
}

struct ProblemCase {
    const char* name;
    std::string line;
    std::string note;
};

class XcconfigProblems : public ::testing::TestWithParam<ProblemCase> {};

TEST_P(XcconfigProblems, NoteTheLineAndSkipOnlyIt) {
    const auto contents = parse("X = 1\n" + GetParam().line + "\nY = 2");
    ASSERT_EQ(contents.notes.size(), 1u);
    EXPECT_EQ(contents.notes[0], "/project/Config.xcconfig:2: " + GetParam().note);
    ASSERT_EQ(contents.assignments.size(), 2u);
    EXPECT_EQ(contents.assignments[1].name, "Y");
}

INSTANTIATE_TEST_SUITE_P(
    Table, XcconfigProblems,
    ::testing::Values(
        ProblemCase{"leadingDigit", "1A = x", "expected a setting name; line skipped"},
        ProblemCase{"dashInName", "FOO-BAR = x", "expected = after FOO; line skipped"},
        ProblemCase{"noEquals", "FOO", "expected = after FOO; line skipped"},
        ProblemCase{"openCondition", "A[sdk=x = y",
                    "expected [parameter=pattern] after A; line skipped"},
        ProblemCase{"angleInclude", "#include <x.xcconfig>",
                    "#include needs one path in double quotes; line skipped"},
        ProblemCase{"includeWithoutBlank", "#include\"x.xcconfig\"",
                    "unsupported directive #include; line skipped"},
        ProblemCase{"otherDirective", "#pragma once",
                    "unsupported directive #pragma; line skipped"},
        ProblemCase{"sdkrootBySdk", "SDKROOT[sdk=iphoneos*] = iphoneos",
                    "SDKROOT cannot depend on the SDK; Xcode ignores this line"}),
    [](const auto& entry) { return std::string(entry.param.name); });

} // namespace
} // namespace kelvane::settings
