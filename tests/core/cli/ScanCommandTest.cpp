#include "cli/ScanCommand.h"
#include "FakeChecks.h"
#include "ProjectFiles.h"
#include "TempDir.h"
#include "cli/ChecksCommand.h"
#include "cli/ScanText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace kelvane::cli {
namespace {

using testing::FakeCheck;

AnyCheck returning(const std::string& id, Severity severity) {
    return FakeCheck{id, FakeCheck::Behaviour::issue, severity};
}
AnyCheck throwing(const std::string& id, const std::string& text) {
    return FakeCheck{id, FakeCheck::Behaviour::failure, Severity::success, text};
}

class ScanCommand : public ::testing::Test {
protected:
    testing::TempDir dir;
    std::string project = [this] {
        dir.write("App.xcodeproj/project.pbxproj", testing::pbxproj(""));
        return dir.file("App.xcodeproj");
    }();

    struct Run {
        int status;
        std::string out;
        std::string err;
    };
    static Run scan(const std::string& path, ScanFormat format, std::vector<AnyCheck> checks) {
        std::ostringstream out;
        std::ostringstream err;
        const int status = runScan(path, format, out, err, std::move(checks));
        return {status, out.str(), err.str()};
    }
};

TEST_F(ScanCommand, ExitStatusFollowsTheMostSevereIssue) {
    const std::vector<std::pair<std::vector<AnyCheck>, int>> cases{
        {{}, 0},
        {{returning("a", Severity::success), returning("b", Severity::warning)}, 0},
        {{returning("a", Severity::warning), returning("b", Severity::error)}, 1},
        {{throwing("a", "boom")}, 0},
    };
    for (const auto& [checks, status] : cases) {
        EXPECT_EQ(scan(project, ScanFormat::json, checks).status, status) << checks.size();
        EXPECT_EQ(scan(project, ScanFormat::text, checks).status, status) << checks.size();
    }
}

TEST_F(ScanCommand, JsonReportRecordsFailedChecksAndKeepsStdoutClean) {
    const Run run = scan(project, ScanFormat::json,
                         {throwing("signing.inconsistent", "x.entitlements: Permission denied"),
                          returning("app.group.consistency", Severity::warning),
                          returning("bundle.identifier.collision", Severity::error)});
    EXPECT_EQ(run.err, "Check signing.inconsistent failed: x.entitlements: Permission denied\n");
    const auto json = nlohmann::ordered_json::parse(run.out);
    EXPECT_EQ(json["project"]["path"], project);
    EXPECT_EQ(json["project"]["name"], "App");
    EXPECT_GE(json["scanDuration"].get<double>(), 0.0);
    EXPECT_LT(json["scanDuration"].get<double>(), 5.0) << "an unpaced scan must not sleep";
    ASSERT_EQ(json["checks"].size(), 3U);
    EXPECT_EQ(json["checks"][0]["error"], "x.entitlements: Permission denied");
    EXPECT_EQ(json["checks"][0]["issueId"], nullptr);
    EXPECT_EQ(json["checks"][1]["title"], "App Group Consistency");
    ASSERT_EQ(json["issues"].size(), 2U);
    EXPECT_EQ(json["issues"][0]["id"], "bundle.identifier.collision");
    EXPECT_EQ(json["issues"][1]["id"], "app.group.consistency");
}

TEST_F(ScanCommand, ProjectsThatDoNotLoadPrintOnlyTheReason) {
    dir.write("Empty.xcodeproj/README", "");
    const std::vector<std::pair<std::string, std::string>> cases{
        {dir.file("Missing.xcodeproj"), "kelvane: The selected path does not exist.\n"},
        {dir.file("Empty.xcodeproj"),
         "kelvane: Failed to parse project: project.pbxproj not found\n"},
    };
    for (const auto& [path, message] : cases) {
        for (const ScanFormat format : {ScanFormat::text, ScanFormat::json}) {
            const Run run = scan(path, format, {returning("a", Severity::error)});
            EXPECT_EQ(run.status, 2);
            EXPECT_EQ(run.out, "");
            EXPECT_EQ(run.err, message);
        }
    }
}

TEST(ScanText, ListsEveryCheckThenTheFindingsInFull) {
    const DoctorIssue warning{
        .id = "app.group.consistency",
        .severity = Severity::warning,
        .title = "App Group Inconsistency",
        .description = "First line.\n\n• bullet",
        .impact = "Data is not shared.",
        .evidence = {{EntitlementsSource{"Widget", "Entitlements"}, "groups", "group.b",
                      "group.a"}},
        .affectedTargets = {{"Widget", TargetType::widgetExtension, "com.a.w"},
                            {"Tool", TargetType::unknown, std::nullopt}},
        .fix = DoctorFix{.summary = "Align",
                         .safety = FixSafety::manualOnly,
                         .steps = {{"Review", ManualInstruction{{"Open Xcode"}}},
                                   {"Set", SetBuildSetting{"Widget", "All", "K", "V"}}},
                         .warningMessage = "Careful."},
    };
    const DoctorIssue success{
        .id = "signing.inconsistent", .severity = Severity::success, .title = "Consistent"};
    const FinishedScan scan{
        .projectPath = "w/App.xcodeproj",
        .projectName = "App",
        .scanDuration = 0.25,
        .report = {.issues = {warning, success},
                   .checks = {{"signing.inconsistent", success, std::nullopt},
                              {"app.group.consistency", warning, std::nullopt},
                              {"cloudkit.container.mismatch", std::nullopt, std::nullopt},
                              {"deployment.target.mismatch", std::nullopt, "boom"}}},
    };
    std::ostringstream out;
    writeScanText(scan, out);
    EXPECT_EQ(out.str(), "Scanned App (w/App.xcodeproj) in 0.25 s\n"
                         "\n"
                         "  ✓ Signing Consistency: Consistent\n"
                         "  ⚠ App Group Consistency: App Group Inconsistency\n"
                         "  - CloudKit Container Configuration: not applicable\n"
                         "  ! Deployment Target Mismatch: check failed: boom\n"
                         "\n"
                         "0 errors, 1 warning, 1 passed, 1 failed\n"
                         "\n"
                         "⚠ warning: App Group Inconsistency [app.group.consistency]\n"
                         "  First line.\n"
                         "\n"
                         "  • bullet\n"
                         "\n"
                         "  Impact: Data is not shared.\n"
                         "\n"
                         "  Evidence\n"
                         "    Widget → Entitlements\n"
                         "      groups: group.b\n"
                         "      Expected: group.a\n"
                         "\n"
                         "  Affected targets\n"
                         "    Widget (widgetExtension, com.a.w)\n"
                         "    Tool (unknown)\n"
                         "\n"
                         "  Fix: Align (manualOnly)\n"
                         "    Warning: Careful.\n"
                         "    1. Review\n"
                         "       - Open Xcode\n"
                         "    2. Set\n");
}

TEST(ChecksCommand, ListsChecksInRunOrderWithTheirTitles) {
    std::ostringstream out;
    writeCheckList(
        {returning("signing.inconsistent", Severity::success), returning("x", Severity::success)},
        out);
    EXPECT_EQ(out.str(), "signing.inconsistent  Signing Consistency\n"
                         "x                     x\n");
}

} // namespace
} // namespace kelvane::cli
