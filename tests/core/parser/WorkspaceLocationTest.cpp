#include "parser/WorkspaceLocation.h"

#include <gtest/gtest.h>

#include <ctime>
#include <optional>
#include <random>
#include <regex>
#include <string>

namespace kelvane {
namespace {

struct PatternCase {
    const char* label;
    std::string text;
    std::optional<std::string> expected;
};

class WorkspaceLocationCases : public ::testing::TestWithParam<PatternCase> {};

TEST_P(WorkspaceLocationCases, FindsTheFirstProjectLikeTheRegularExpression) {
    const PatternCase& c = GetParam();
    const auto found = firstProjectLocation(c.text);
    EXPECT_EQ(found ? std::optional<std::string>(std::string(*found)) : std::nullopt, c.expected)
        << c.label;
}

const std::string kHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Workspace\n   version = \"1.0\">\n";

INSTANTIATE_TEST_SUITE_P(
    Workspaces, WorkspaceLocationCases,
    ::testing::Values(
        PatternCase{"group prefix",
                    kHeader + "   <FileRef\n      location = \"group:App/App.xcodeproj\">\n",
                    "App/App.xcodeproj"},
        PatternCase{"absolute prefix keeps the leading slash",
                    "<FileRef location = \"absolute:/tmp/X.xcodeproj\">", "/tmp/X.xcodeproj"},
        PatternCase{"only the first of two projects",
                    "location = \"group:First.xcodeproj\"\nlocation = \"group:Second.xcodeproj\"",
                    "First.xcodeproj"},
        PatternCase{"self reference has no project", "<FileRef location = \"self:\">",
                    std::nullopt},
        PatternCase{"a self reference before a project",
                    "location = \"self:\">\n<FileRef location = \"group:B.xcodeproj\">",
                    "B.xcodeproj"},
        PatternCase{"a later match after a failed start",
                    "location = \"group:Pods/Pods.xcworkspace\"\nlocation = \"group:A.xcodeproj\"",
                    "A.xcodeproj"},
        PatternCase{"blanks of every kind around the equals sign",
                    "location \t\r\n\v\f=\n\t \"group:A.xcodeproj\"", "A.xcodeproj"},
        PatternCase{"line breaks inside the value",
                    "location = \"group\n:Sub\nFolder/A.xcodeproj\"", "Sub\nFolder/A.xcodeproj"},
        PatternCase{"the prefix may run past quotes to the next colon",
                    "location = \"noColon\" other=\"x:A.xcodeproj\"", "A.xcodeproj"},
        PatternCase{"suffix is case-sensitive", "location = \"group:A.XCODEPROJ\"", std::nullopt},
        PatternCase{"non-ASCII text in the path", "location = \"group:Äpp/Äpp.xcodeproj\"",
                    "Äpp/Äpp.xcodeproj"}));

// The same pattern through std::regex (ECMAScript: leftmost, backtracking, the
// same \s) on many small random texts built from the pattern's own pieces.
TEST(WorkspaceLocation, AgreesWithARegularExpressionEngineOnRandomTexts) {
    const std::regex pattern(R"re(location\s*=\s*"[^:]*:([^"]*\.xcodeproj)")re");
    const std::vector<std::string> pieces{"location", "=", " ",          "\n", "\t", "\"",    ":",
                                          "a",        "/", ".xcodeproj", "x",  ".",  "self:", "\r"};
    std::mt19937 random(20240501);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        const int count = static_cast<int>(random() % 12);
        for (int i = 0; i < count; ++i) {
            text += pieces[random() % pieces.size()];
        }
        std::smatch match;
        const bool expected = std::regex_search(text, match, pattern);
        const auto found = firstProjectLocation(text);
        ASSERT_EQ(found.has_value(), expected) << text;
        if (expected) {
            ASSERT_EQ(std::string(*found), match[1].str()) << text;
        }
    }
}

TEST(WorkspaceLocation, StaysFastOnTextsThatDefeatBacktracking) {
    const std::vector<std::string> texts{
        // Many starts, each scanning far for a colon that never comes.
        [] {
            std::string s;
            for (int i = 0; i < 200000; ++i)
                s += "location=\"";
            return s;
        }(),
        // Many starts that find a colon but no closing quote.
        [] {
            std::string s;
            for (int i = 0; i < 200000; ++i)
                s += "location=\"a:b";
            return s;
        }(),
        // One start with a long value and no suffix.
        "location = \"g:" + std::string(5'000'000, 'a') + "\"",
    };
    for (const std::string& text : texts) {
        // Processor time, so a busy machine does not fail the test; a quadratic
        // search would need hours here, not a second.
        const std::clock_t started = std::clock();
        EXPECT_FALSE(firstProjectLocation(text).has_value());
        EXPECT_LT(static_cast<double>(std::clock() - started) / CLOCKS_PER_SEC, 1.0);
    }
}

} // namespace
} // namespace kelvane
