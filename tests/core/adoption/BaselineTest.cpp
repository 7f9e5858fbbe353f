#include "adoption/Baseline.h"
#include "adoption/CheckSelection.h"
#include "adoption/FindingKeys.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <string>
#include <vector>

namespace kelvane::adoption {
namespace {

// An issue as the as-built checks write one: a head line, then a line per
// finding ending with its configurations.
DoctorIssue builtIssue(std::vector<std::string> lines) {
    DoctorIssue issue{.id = "signing.inconsistent", .severity = Severity::warning,
                      .title = "Signing", .description = "Targets disagree:"};
    for (const std::string& line : lines) {
        issue.description += "\n\u2022 " + line;
    }
    issue.configurations = {"Debug", "Release"};
    return issue;
}

DoctorIssue literalIssue(std::string value) {
    return DoctorIssue{.id = "watch.companion.mismatch",
                       .severity = Severity::error,
                       .title = "Watch",
                       .description = "Mismatch",
                       .evidence = {EvidenceItem{.key = "WKCompanionAppBundleIdentifier",
                                                 .value = std::move(value)}},
                       .affectedTargets = {TargetRef{.name = "Watch"}}};
}

ScanReport reportOf(const std::vector<std::pair<std::string, DoctorIssue>>& results) {
    ScanReport report;
    for (const auto& [check, issue] : results) {
        report.checks.push_back(CheckOutcome{.checkID = check, .issue = issue});
        report.issues.push_back(issue);
    }
    return report;
}

TEST(FindingKeys, DropOnlyTheConfigurationsTheIssueNames) {
    const std::vector<std::string> configurations{"Debug", "Release"};
    const std::vector<std::pair<std::string, std::string>> cases{
        {"\u2022 A differs (Debug, Release)", "A differs"},
        {"\u2022 A differs (Release)", "A differs"},
        {"\u2022 Team (ABCDE12345) differs (Debug)", "Team (ABCDE12345) differs"},
        {"\u2022 Team differs (ABCDE12345)", "Team differs (ABCDE12345)"},
        {"\u2022 Beta differs (Debug, Beta)", "Beta differs (Debug, Beta)"},
        {"A differs", "A differs"},
    };
    for (const auto& [line, key] : cases) {
        EXPECT_EQ(findingText(line, configurations), key) << line;
    }
}

TEST(FindingKeys, LiteralIssuesAreOneFindingAndPassesNone) {
    EXPECT_EQ(issueFindings("c", literalIssue("x")).size(), 1u);
    EXPECT_EQ(issueFindings("c", builtIssue({"a (Debug)", "b (Release)"})).size(), 2u);
    EXPECT_TRUE(issueFindings("c", DoctorIssue{.id = "c", .severity = Severity::success}).empty());
    // The key ignores where the issue sits and in which configurations.
    EXPECT_EQ(issueFindings("c", builtIssue({"a (Debug)"}))[0].key,
              issueFindings("c", builtIssue({"a (Release)"}))[0].key);
    EXPECT_NE(issueFindings("c", literalIssue("x"))[0].key,
              issueFindings("c", literalIssue("y"))[0].key);
}

struct FilterCase {
    std::string name;
    ScanReport accepted;
    ScanReport today;
    // The descriptions left, in report order; empty: nothing reported.
    std::vector<std::string> remaining;
};

TEST(Baseline, ReportsOnlyWhatItDoesNotHold) {
    const std::string signing = "signing.inconsistent";
    const std::string watch = "watch.companion.mismatch";
    const std::vector<FilterCase> cases{
        {"nothing new",
         reportOf({{signing, builtIssue({"a (Debug)", "b (Release)"})}, {watch, literalIssue("x")}}),
         reportOf({{signing, builtIssue({"a (Debug)", "b (Release)"})}, {watch, literalIssue("x")}}),
         {}},
        {"a finding moved to another configuration",
         reportOf({{signing, builtIssue({"a (Debug)"})}}),
         reportOf({{signing, builtIssue({"a (Debug, Release)"})}}), {}},
        {"one new line of two",
         reportOf({{signing, builtIssue({"a (Debug)"})}}),
         reportOf({{signing, builtIssue({"a (Debug)", "b (Release)"})}}),
         {"Targets disagree:\n\u2022 b (Release)"}},
        {"a changed value",
         reportOf({{watch, literalIssue("x")}, {signing, builtIssue({"a (Debug)"})}}),
         reportOf({{watch, literalIssue("y")}, {signing, builtIssue({"a (Debug)"})}}), {"Mismatch"}},
        {"the same finding from another check",
         reportOf({{"other", builtIssue({"a (Debug)"})}}),
         reportOf({{signing, builtIssue({"a (Debug)"})}}), {"Targets disagree:\n\u2022 a (Debug)"}},
    };
    for (const FilterCase& c : cases) {
        SCOPED_TRACE(c.name);
        const Baseline baseline = Baseline::fromText(Baseline::of(c.accepted).toText(), "b.json");
        const ScanReport left = withoutKnownFindings(c.today, baseline);
        std::vector<std::string> descriptions;
        for (const DoctorIssue& issue : left.issues) {
            descriptions.push_back(issue.description);
        }
        EXPECT_EQ(descriptions, c.remaining);
        // The rows say the same as the list.
        std::size_t rowsWithIssues = 0;
        for (const CheckOutcome& outcome : left.checks) {
            if (outcome.issue) {
                ++rowsWithIssues;
                EXPECT_NE(std::find(left.issues.begin(), left.issues.end(), *outcome.issue),
                          left.issues.end());
            }
        }
        EXPECT_EQ(rowsWithIssues, left.issues.size());
        EXPECT_EQ(left.checks.size(), c.today.checks.size());
    }
}

TEST(Baseline, RefusesWhatIsNotOne) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "b.json: not a baseline: "},
        {"[1, 2]", "b.json: not a baseline: expected {\"version\": 1, \"findings\": [...]}"},
        {R"({"version": 2, "findings": []})",
         "b.json: baseline version 2 is not one this kelvane reads (1); write it again with "
         "--write-baseline"},
        {R"({"version": 1, "findings": {}})", "b.json: not a baseline: \"findings\" must be a list"},
        {R"({"version": 1, "findings": [3]})",
         "b.json: not a baseline: each finding must be an object naming its check"},
        {std::string(40, '[') + std::string(40, ']'), "b.json: nested too deeply for a baseline"},
    };
    for (const auto& [text, error] : cases) {
        SCOPED_TRACE(text);
        try {
            (void)Baseline::fromText(text, "b.json");
            ADD_FAILURE() << "accepted";
        } catch (const BaselineError& failure) {
            EXPECT_TRUE(std::string(failure.what()).starts_with(error)) << failure.what();
        }
    }
}

struct NamedCheck {
    std::string name;
    [[nodiscard]] std::string id() const { return name; }
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext&) const { return {}; }
};

std::vector<std::string> ids(const std::vector<AnyCheck>& checks) {
    std::vector<std::string> result;
    for (const AnyCheck& check : checks) {
        result.push_back(check.id());
    }
    return result;
}

TEST(CheckSelection, KeepsRegistryOrderAndNamesTheUnknown) {
    const std::vector<AnyCheck> registry{NamedCheck{"a"}, NamedCheck{"b"}, NamedCheck{"c"}};
    using Ids = std::vector<std::string>;
    EXPECT_EQ(ids(selectChecks(registry, {"c", "a"}, {})), (Ids{"a", "c"}));
    EXPECT_EQ(ids(selectChecks(registry, {}, {"b"})), (Ids{"a", "c"}));
    EXPECT_EQ(ids(selectChecks(registry, {"a", "b"}, {"a"})), (Ids{"b"}));
    EXPECT_EQ(unknownCheck({"b", "x", "y"}, ids(registry)), "x");
    EXPECT_EQ(unknownCheck({"c", "a"}, ids(registry)), std::nullopt);
}

} // namespace
} // namespace kelvane::adoption
