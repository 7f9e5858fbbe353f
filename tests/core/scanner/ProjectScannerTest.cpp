#include "ScannerHarness.h"

namespace kelvane::testing {
namespace {

using std::chrono::milliseconds;
using Scanner = ScannerHarness;

TEST_F(Scanner, PausesBeforeEveryCheckAndReportsEachBeforeTheNextPause) {
    const auto completion = scan(
        {returning("a", Severity::success), returning("b", Severity::warning), returningNone("c")});
    ASSERT_TRUE(completion);
    // The parse takes the loop's next turn; then one 150 ms pause per check,
    // the first one included.
    EXPECT_EQ(loop.delays(), (std::vector<milliseconds>{milliseconds{0}, milliseconds{150},
                                                        milliseconds{150}, milliseconds{150}}));
    EXPECT_EQ(*journal, (Journal{
                            "150 run a",
                            "150 progress a -> a",
                            "300 run b",
                            "300 progress b -> b",
                            "450 run c",
                            "450 progress c -> none",
                            "450 complete",
                        }));
    EXPECT_EQ(failures.str(), "");
}

TEST_F(Scanner, ReportsEveryCheckInRegistryOrder) {
    const auto completion = scan({returning("a", Severity::error), returningNone("b"),
                                  throwing("c", "boom"), returning("d", Severity::success)});
    ASSERT_TRUE(completion);
    const ScanReport& report = std::get<ScanReport>(*completion);
    ASSERT_EQ(report.checks.size(), 4U);
    const std::vector<
        std::tuple<std::string, std::optional<std::string>, std::optional<std::string>>>
        expected{{"a", "a", std::nullopt},
                 {"b", std::nullopt, std::nullopt},
                 {"c", std::nullopt, "boom"},
                 {"d", "d", std::nullopt}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const CheckOutcome& outcome = report.checks[i];
        const auto& [id, issueID, failure] = expected[i];
        EXPECT_EQ(outcome.checkID, id);
        EXPECT_EQ(outcome.issue ? std::optional(outcome.issue->id) : std::nullopt, issueID) << id;
        EXPECT_EQ(outcome.failure, failure) << id;
    }
}

TEST_F(Scanner, FailingCheckIsLoggedReportedWithoutIssueAndTheScanGoesOn) {
    const auto completion = scan({throwing("first", "file: Permission denied"),
                                  returning("b", Severity::warning), throwing("c", "")});
    ASSERT_TRUE(completion);
    EXPECT_EQ(failures.str(), "Check first failed: file: Permission denied\nCheck c failed: \n");
    EXPECT_EQ(issueIDs(*completion), std::vector<std::string>{"b"});
    EXPECT_EQ(*journal, (Journal{"150 run first", "150 progress first -> none", "300 run b",
                                 "300 progress b -> b", "450 run c", "450 progress c -> none",
                                 "450 complete"}));
}

TEST_F(Scanner, SortsBySeverityStablyKeepingRegistryOrderWithinASeverity) {
    const Severity s = Severity::success, w = Severity::warning, e = Severity::error;
    const std::vector<Severity> severities{s, e, s, s, w, e, s, s, w};
    std::vector<AnyCheck> checks;
    for (std::size_t i = 0; i < severities.size(); ++i) {
        checks.push_back(returning(std::to_string(i + 1), severities[i]));
    }
    const auto completion = scan(checks);
    ASSERT_TRUE(completion);
    EXPECT_EQ(issueIDs(*completion),
              (std::vector<std::string>{"2", "6", "5", "9", "1", "3", "4", "7", "8"}));
    EXPECT_EQ(loop.now(), milliseconds{9 * 150});
}

TEST_F(Scanner, AllSuccessesComeBackInRegistryOrder) {
    const auto completion =
        scan({returning("z", Severity::success), returning("a", Severity::success),
              returning("m", Severity::success)});
    ASSERT_TRUE(completion);
    EXPECT_EQ(issueIDs(*completion), (std::vector<std::string>{"z", "a", "m"}));
}

TEST_F(Scanner, EmptyRegistryCompletesWithoutPausing) {
    const auto completion = scan({});
    ASSERT_TRUE(completion);
    const auto& report = std::get<ScanReport>(*completion);
    EXPECT_TRUE(report.issues.empty());
    EXPECT_TRUE(report.checks.empty());
    // The project the checks would have read goes with the report.
    EXPECT_NE(report.project, nullptr);
    EXPECT_EQ(loop.delays(), std::vector<milliseconds>{milliseconds{0}});
    EXPECT_EQ(loop.now(), milliseconds{0});
}

TEST_F(Scanner, PauseIsAConstructorOption) {
    ProjectScanner unpaced(loop, failures, {returning("a", Severity::success)}, milliseconds{0});
    bool completed = false;
    unpaced.scan(projectURL, nullptr, [&](ScanCompletion) { completed = true; });
    loop.runUntilIdle();
    EXPECT_TRUE(completed);
    EXPECT_EQ(loop.now(), milliseconds{0});
    EXPECT_EQ(ProjectScanner(loop, failures).checkPause(), milliseconds{150});
}

TEST_F(Scanner, OverlappingScansKeepTheirOwnResults) {
    ProjectScanner scanner(loop, failures,
                           {returning("a", Severity::warning), returning("b", Severity::error)});
    std::vector<std::vector<std::string>> results;
    auto collect = [&](ScanCompletion completion) {
        results.push_back(issueIDs(completion));
    };
    scanner.scan(projectURL, nullptr, collect);
    scanner.scan(projectURL, nullptr, collect);
    loop.runUntilIdle();
    EXPECT_EQ(results, (std::vector<std::vector<std::string>>{{"b", "a"}, {"b", "a"}}));
}

} // namespace
} // namespace kelvane::testing
