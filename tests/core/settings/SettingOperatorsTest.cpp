#include "ScopeFromText.h"

#include <gtest/gtest.h>

namespace kelvane::settings {
namespace {

using testing::assignment;
using testing::shown;

struct OperatorCase {
    const char* name;
    std::string value; // of X
    std::string reference;
    std::string expected;
};

class Operators : public ::testing::TestWithParam<OperatorCase> {};

TEST_P(Operators, ApplyToTheWholeText) {
    const SettingsScope scope(
        {assignment("X", GetParam().value), assignment("Y", "why"), assignment("EMPTY", "")}, {});
    EXPECT_EQ(shown(scope.expand(GetParam().reference)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Case, Operators,
    ::testing::Values(OperatorCase{"lower", "My ÀPP", "$(X:lower)", "my àpp"},
                      OperatorCase{"upper", "straße ώ я", "$(X:upper)", "STRASSE Ώ Я"},
                      OperatorCase{"chainLeftToRight", "/a/My.App", "$(X:file:upper)", "MY.APP"},
                      OperatorCase{"unknownOperatorKeeps", "Abc", "$(X:__md5:nope)", "Abc"},
                      OperatorCase{"not", "YES", "$(X:not) $(Y:not)", "NO YES"},
                      OperatorCase{"truncatedVersion", "1.2.3.4", "$(X:truncatedversion)", "1.2.3"},
                      OperatorCase{"quote", "foo bar \"'\\", "$(X:quote)",
                                   "foo\\ bar\\ \\\"\\'\\\\"},
                      OperatorCase{"quoteEmpty", "", "$(X:quote)", "\"\""}),
    [](const auto& entry) { return std::string(entry.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Identifier, Operators,
    ::testing::Values(
        OperatorCase{"cBlanksAndDots", "Some File.txt", "$(X:identifier)", "Some_File_txt"},
        OperatorCase{"cLeadingDigit", "2048 Game", "$(X:identifier)", "_048_Game"},
        OperatorCase{"cComposedAccent", "Café", "$(X:identifier)", "Caf_"},
        OperatorCase{"cDecomposedAccent", "Cafe\xCC\x81", "$(X:identifier)", "Caf_"},
        OperatorCase{"cFlagIsOneCharacter", "\U0001F1EB\U0001F1F7x", "$(X:identifier)", "_x"},
        OperatorCase{"cJoinedEmoji", "\U0001F468\u200D\U0001F469!", "$(X:identifier)", "__"},
        OperatorCase{"rfc1034", "My_App.v2", "$(X:rfc1034identifier)", "My-App-v2"},
        OperatorCase{"rfc1034LeadingDigit", "1Password", "$(X:rfc1034identifier)", "-Password"},
        OperatorCase{"c99KeepsLetters", "ÜTF-8", "$(X:c99extidentifier)", "ÜTF_8"},
        OperatorCase{"c99LeadingDigit", "12 3", "$(X:c99extidentifier)", "_2_3"},
        OperatorCase{"c99Hangul", "a가가", "$(X:c99extidentifier)", "a가가"},
        OperatorCase{"c99PerCodePoint", "\U0001F44D\U0001F3FD", "$(X:c99extidentifier)", "__"},
        OperatorCase{"c99ArabicDigitFirst", "\u0661a", "$(X:c99extidentifier)", "_a"},
        OperatorCase{"emptyStaysEmpty", "", "[$(X:identifier)]", "[]"}),
    [](const auto& entry) { return std::string(entry.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Path, Operators,
    ::testing::Values(
        OperatorCase{"dir", "/tmp/P/A.framework", "$(X:dir)", "/tmp/P/"},
        OperatorCase{"dirOfBareName", "foo", "$(X:dir)", "./"},
        OperatorCase{"file", "/tmp/P/A.framework/", "$(X:file)", "A.framework"},
        OperatorCase{"base", "dir/a.tar.gz", "$(X:base)", "a.tar"},
        OperatorCase{"suffix", "dir/a.tar.gz", "$(X:suffix)", ".gz"},
        OperatorCase{"noSuffix", "dir/a", "[$(X:suffix)]", "[]"},
        OperatorCase{"standardizeAbsolute", "//foo/./bar/../baz/", "$(X:standardizepath)",
                     "/foo/baz"},
        OperatorCase{"standardizeRelativeKeepsDotDot", "foo/../bar/./baz/", "$(X:standardizepath)",
                     "foo/../bar/baz"},
        OperatorCase{"replaceDir", "/a/b/c.txt", "$(X:dir=/x/y)", "/x/y/c.txt"},
        OperatorCase{"replaceFile", "/a/b/c.txt", "$(X:file=d.md)", "/a/b/d.md"},
        OperatorCase{"replaceBase", "/a/b/c.txt", "$(X:base=d)", "/a/b/d.txt"},
        OperatorCase{"replaceBaseWithoutExtension", "/a/b/c", "$(X:base=d)", "/a/b/d."},
        OperatorCase{"replaceSuffix", "/a/b/c.txt", "$(X:suffix=o) $(X:suffix=.o)",
                     "/a/b/c.o /a/b/c.o"},
        OperatorCase{"relativeTo", "/usr/bin", "$(X:relativeto=/usr/lib)", "../lib"},
        OperatorCase{"relativeToItself", "/usr/bin/", "$(X:relativeto=/usr/bin)", "."},
        OperatorCase{"relativeToNeedsAbsolute", "usr/bin", "$(X:relativeto=/usr/lib)", "usr/bin"},
        OperatorCase{"isAncestor", "/a/b/c", "$(X:isancestor=/a) $(X:isancestor=/a/b/c)", "YES NO"},
        OperatorCase{"operandWithReference", "/a/b.c", "$(X:file=$(Y).txt)", "/a/why.txt"}),
    [](const auto& entry) { return std::string(entry.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Default, Operators,
    ::testing::Values(OperatorCase{"keepsValue", "10.15", "$(X:default=11.0)", "10.15"},
                      OperatorCase{"fillsEmpty", "", "$(X:default=11.0)", "11.0"},
                      OperatorCase{"fillsUndefined", "", "$(NOPE:default=$(Y))", "why"},
                      OperatorCase{"thenOtherOperators", "", "$(NOPE:default=a b:quote)", "a\\ b"},
                      OperatorCase{"operandEndsAtColon", "", "$(NOPE:default=http://x)", "http"},
                      OperatorCase{"undefinedGivesNothing", "",
                                   "[$(NOPE:quote)$(NOPE:not)$(NOPE:dir=/x)]", "[]"}),
    [](const auto& entry) { return std::string(entry.param.name); });

} // namespace
} // namespace kelvane::settings
