#include "scanner/ScanViewModel.h"
#include "FakeChecks.h"
#include "ProjectFiles.h"
#include "TempDir.h"
#include "scanner/CheckTitles.h"
#include "scanner/VirtualClockLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace kelvane::testing {
namespace {

using std::chrono::milliseconds;

// The nine registered ids answered by fakes: the first returns an error, the
// fifth a warning, the seventh nothing, the rest success.
std::vector<AnyCheck> fakeRegistry() {
    std::vector<AnyCheck> checks;
    for (std::size_t i = 0; i < kCheckTitles.size(); ++i) {
        FakeCheck check{std::string(kCheckTitles[i].id)};
        check.severity = i == 0 ? Severity::error : i == 4 ? Severity::warning : Severity::success;
        check.behaviour = i == 6 ? FakeCheck::Behaviour::none : FakeCheck::Behaviour::issue;
        checks.emplace_back(check);
    }
    return checks;
}

std::vector<CheckStatus> statuses(const ScanState& state) {
    std::vector<CheckStatus> result;
    for (const CheckProgress& row : std::get<ScanningState>(state).checkProgress) {
        result.push_back(row.status);
    }
    return result;
}

class ViewModel : public ::testing::Test {
protected:
    TempDir dir;
    std::string projectURL = dir.write("Demo.xcodeproj/project.pbxproj", pbxproj("")),
                projectPath = dir.file("Demo.xcodeproj");
    VirtualClockLoop loop;
    std::ostringstream failures;
    ScanViewModel model{loop, ProjectScanner(loop, failures, fakeRegistry())};
    // Every state the observers were told of, in order.
    std::vector<ScanState> told;

    void SetUp() override {
        model.addObserver([this](const ScanState& next) { told.push_back(next); });
    }

    void completeScan() {
        model.startScan(projectPath);
        loop.runUntilIdle();
        ASSERT_TRUE(std::holds_alternative<CompletedState>(model.state()));
    }
};

TEST_F(ViewModel, StartsWithNineRowsInRegistryOrderTheFirstRunning) {
    model.startScan(projectPath);
    const auto& scanning = std::get<ScanningState>(model.state());
    EXPECT_EQ(scanning.projectPath, projectPath);
    ASSERT_EQ(scanning.checkProgress.size(), 9U);
    EXPECT_EQ(scanning.checkProgress[0].title, "Watch Companion Bundle ID");
    EXPECT_EQ(scanning.checkProgress[8].id, "entitlement.without.capability");
    EXPECT_EQ(statuses(model.state())[0], CheckStatus::running);
    for (const CheckProgress& row : scanning.checkProgress) {
        EXPECT_FALSE(row.issue) << row.id;
    }
}

TEST_F(ViewModel, AfterTheKthReportRowsUpToKAreCompletedAndTheNextRuns) {
    model.startScan(projectPath);
    loop.runUntilIdle();
    // Told: the initial list, one list per report, then the result.
    ASSERT_EQ(told.size(), 11U);
    for (std::size_t k = 1; k <= 9; ++k) {
        const std::vector<CheckStatus> rows = statuses(told[k]);
        for (std::size_t row = 0; row < 9; ++row) {
            const CheckStatus expected = row < k    ? CheckStatus::completed
                                         : row == k ? CheckStatus::running
                                                    : CheckStatus::pending;
            EXPECT_EQ(rows[row], expected) << "after report " << k << ", row " << row + 1;
        }
    }
    const auto& rows = std::get<ScanningState>(told[9]).checkProgress;
    EXPECT_EQ(rows[0].issue->severity, Severity::error);
    EXPECT_FALSE(rows[6].issue) << "a check that returned nothing leaves its row without issue";
}

TEST_F(ViewModel, CompletedResultKeepsThisScansPathNameSortedIssuesAndFinishedRows) {
    completeScan();
    const ProjectScanResult& result = std::get<CompletedState>(model.state()).result;
    EXPECT_EQ(result.projectPath, projectPath);
    EXPECT_EQ(result.projectName, "Demo");
    ASSERT_EQ(result.issues.size(), 8U);
    EXPECT_EQ(result.issues[0].severity, Severity::error);
    EXPECT_EQ(result.issues[1].severity, Severity::warning);
    EXPECT_EQ(result.checkProgress, std::get<ScanningState>(told[9]).checkProgress);
}

TEST_F(ViewModel, PacedScanLastsAtLeastNineTimesThePause) {
    completeScan();
    EXPECT_GE(std::get<CompletedState>(model.state()).result.scanDuration, 1.35);

    VirtualClockLoop quickLoop;
    ScanViewModel unpaced(quickLoop,
                          ProjectScanner(quickLoop, failures, fakeRegistry(), milliseconds{0}));
    unpaced.startScan(projectPath);
    quickLoop.runUntilIdle();
    EXPECT_EQ(std::get<CompletedState>(unpaced.state()).result.scanDuration, 0.0);
}

TEST_F(ViewModel, ReportsThatFindNoRowChangeNothing) {
    // An unknown id never finds a row; outside `scanning` there are no rows
    // to find, so even a registered id is ignored.
    const auto expectIgnored = [&](const std::string& checkID, const char* when) {
        const ScanState before = model.state();
        told.clear();
        model.updateProgress(checkID, DoctorIssue{.id = "late"});
        EXPECT_EQ(model.state(), before) << checkID << " while " << when;
        EXPECT_TRUE(told.empty()) << checkID << " while " << when;
    };
    expectIgnored("signing.inconsistent", "idle");
    model.startScan(projectPath);
    expectIgnored("no.such.check", "scanning");
    expectIgnored("Signing.Inconsistent", "scanning");
    loop.runUntilIdle();
    expectIgnored("signing.inconsistent", "completed");
    model.startScan(dir.file("Missing.xcodeproj"));
    loop.runUntilIdle();
    ASSERT_TRUE(std::holds_alternative<ErrorState>(model.state()));
    expectIgnored("signing.inconsistent", "error");
}

TEST_F(ViewModel, ParseFailureShowsTheScanErrorText) {
    model.startScan(dir.file("Missing.xcodeproj"));
    loop.runUntilIdle();
    const std::string& message = std::get<ErrorState>(model.state()).message;
    EXPECT_EQ(message.rfind("Failed to parse project: ", 0), 0U) << message;
}

TEST_F(ViewModel, ResetDuringAScanDropsItsSuccessButNotALaterFailure) {
    model.startScan(projectPath);
    loop.runNext();
    loop.runNext();
    model.reset();
    EXPECT_EQ(model.state(), ScanState{IdleState{}});
    loop.runUntilIdle();
    EXPECT_EQ(model.state(), ScanState{IdleState{}});

    model.startScan(dir.file("Missing.xcodeproj"));
    model.reset();
    loop.runUntilIdle();
    EXPECT_TRUE(std::holds_alternative<ErrorState>(model.state()));
}

TEST_F(ViewModel, OverlappingScansFirstToFinishWinsTheOtherIsDropped) {
    const std::string other = dir.write("Other.xcodeproj/project.pbxproj", pbxproj(""));
    model.startScan(projectPath);
    loop.runNext(); // the first scan parses
    loop.runNext(); // and runs its first check
    model.reset();
    model.startScan(dir.file("Other.xcodeproj"));
    loop.runUntilIdle();
    // The first scan finishes 150 ms ahead and fills rows the second set up.
    const ProjectScanResult& result = std::get<CompletedState>(model.state()).result;
    EXPECT_EQ(result.projectPath, projectPath);
    EXPECT_EQ(result.projectName, "Demo");
    EXPECT_EQ(
        std::count_if(told.begin(), told.end(),
                      [](const ScanState& s) { return std::holds_alternative<CompletedState>(s); }),
        1);
}

TEST_F(ViewModel, ObserversHearTheNextStateBeforeItTakesEffect) {
    std::vector<std::string> journal;
    const auto kind = [](const ScanState& state) {
        return std::string(std::visit([](const auto& s) { return s.kind; }, state));
    };
    told.clear();
    model.addObserver([&](const ScanState& next) {
        journal.push_back("b sees " + kind(model.state()) + ", told " + kind(next));
    });
    const auto third = model.addObserver(
        [&](const ScanState& next) { journal.push_back("c told " + kind(next)); });
    model.startScan(projectPath);
    model.removeObserver(third);
    model.reset();
    EXPECT_EQ(journal, (std::vector<std::string>{"b sees idle, told scanning", "c told scanning",
                                                 "b sees scanning, told idle"}));
    // The observer added first (in SetUp) heard both changes too.
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(ViewModel, RescanOnlyFromACompletedScan) {
    model.rescan();
    EXPECT_TRUE(told.empty()) << "idle";
    model.startScan(projectPath);
    told.clear();
    model.rescan();
    EXPECT_TRUE(told.empty()) << "scanning";
    loop.runUntilIdle();

    model.rescan();
    EXPECT_EQ(model.state(),
              (ScanState{ScanningState{projectPath, ScanViewModel::initialProgress()}}));
    loop.runUntilIdle();
    model.startScan(dir.file("Missing.xcodeproj"));
    loop.runUntilIdle();
    told.clear();
    model.rescan();
    EXPECT_TRUE(told.empty()) << "error";
}

TEST_F(ViewModel, ApplyingAFixWaitsHalfASecondAndChangesNothing) {
    completeScan();
    const ScanState before = model.state();
    told.clear();

    bool withoutFixDone = false;
    model.applyFix(DoctorIssue{}, [&] { withoutFixDone = true; });
    EXPECT_TRUE(withoutFixDone) << "an issue without a fix returns at once";
    EXPECT_EQ(loop.pendingTasks(), 0U);

    std::optional<milliseconds> doneAt;
    const milliseconds start = loop.now();
    model.applyFix(DoctorIssue{.fix = DoctorFix{.summary = "Fix"}}, [&] { doneAt = loop.now(); });
    EXPECT_FALSE(doneAt);
    loop.runUntilIdle();
    ASSERT_TRUE(doneAt);
    EXPECT_EQ(*doneAt - start, milliseconds{500});
    EXPECT_EQ(model.state(), before);
    EXPECT_TRUE(told.empty());
}

TEST(ViewModelLifetime, AScanOutlivingTheViewModelFinishesQuietly) {
    TempDir dir;
    const std::string project = dir.write("A.xcodeproj/project.pbxproj", pbxproj(""));
    VirtualClockLoop loop;
    std::ostringstream failures;
    {
        ScanViewModel model(loop, ProjectScanner(loop, failures, fakeRegistry()));
        model.startScan(dir.file("A.xcodeproj"));
        loop.runNext();
    }
    EXPECT_GT(loop.runUntilIdle(), 0U);
}

} // namespace
} // namespace kelvane::testing
