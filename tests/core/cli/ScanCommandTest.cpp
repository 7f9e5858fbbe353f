#include "cli/ScanCommand.h"
#include "FakeChecks.h"
#include "ProjectFiles.h"
#include "TempDir.h"
#include "cli/ChecksCommand.h"
#include "report/ScanText.h"
#include "scanner/CheckTitles.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace kelvane::cli {
using namespace kelvane::report;
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
    // Rows keep registry order, whatever order the checks ran in.
    EXPECT_EQ(json["checks"][2]["title"], "App Group Consistency");
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

// Every selection error a path or a folder can reach, with its exact text
// (names in walk order: "B.xcworkspace" sorts before the folder "a");
// a folder that cannot be listed is only reachable when not running as root.
TEST_F(ScanCommand, SelectionErrorsPrintTheirTextAndExitWithTwo) {
    dir.write("two/B.xcworkspace/contents.xcworkspacedata", "");
    dir.write("two/a/A.xcworkspace/contents.xcworkspacedata", "");
    dir.write("projects/A.xcodeproj/project.pbxproj", "");
    dir.write("projects/B.xcodeproj/project.pbxproj", "");
    dir.write("none/Sources/main.swift", "");
    dir.write("hidden/.build/X.xcodeproj/project.pbxproj", "");
    dir.write("file.swift", "");
    const std::vector<std::pair<std::string, std::string>> cases{
        {dir.file("two"), "kelvane: Multiple workspaces found: B.xcworkspace, A.xcworkspace"
                          "\n\nPlease select a specific workspace directly.\n"},
        {dir.file("projects"), "kelvane: Multiple projects found: A.xcodeproj, B.xcodeproj"
                               "\n\nPlease select a specific project directly.\n"},
        {dir.file("gone"), "kelvane: The selected path does not exist.\n"},
        {dir.file("file.swift"), "kelvane: Please select an .xcodeproj, .xcworkspace, or a "
                                 "folder containing a project.\n"},
        {dir.file("none"),
         "kelvane: No .xcodeproj or .xcworkspace found in the selected folder.\n"},
        {dir.file("hidden"),
         "kelvane: No .xcodeproj or .xcworkspace found in the selected folder.\n"},
    };
    for (const auto& [path, message] : cases) {
        const Run run = scan(path, ScanFormat::json, {returning("a", Severity::success)});
        EXPECT_EQ(run.status, 2) << path;
        EXPECT_EQ(run.out, "") << path;
        EXPECT_EQ(run.err, message) << path;
    }
}

// The registry over the two example projects, whose findings their README
// lists: every check row, the issue order and the exit status.
TEST(ScanExamples, ReportsTheDocumentedFindings) {
    struct Case {
        std::string path;
        int status;
        std::vector<std::string> issueOrder;
        std::vector<std::string> severities;
    };
    const std::string examples = (testing::sourceDir() / "examples").string();
    const std::vector<Case> cases{
        {examples + "/Aurora/Aurora.xcodeproj",
         0,
         {"watch.companion.mismatch", "widget.bundle.identifier.invalid",
          "widgetkit.framework.missing", "signing.inconsistent", "bundle.identifier.collision",
          "app.group.consistency", "deployment.target.mismatch", "entitlement.without.capability"},
         std::vector<std::string>(8, "success")},
        {examples + "/Nimbus/Nimbus.xcworkspace",
         1,
         {"watch.companion.mismatch", "cloudkit.container.mismatch",
          "widget.bundle.identifier.invalid", "widgetkit.framework.missing",
          "bundle.identifier.collision", "signing.inconsistent", "app.group.consistency",
          "deployment.target.mismatch", "entitlement.without.capability"},
         {"error", "error", "error", "error", "error", "warning", "warning", "warning", "warning"}},
    };
    for (const Case& c : cases) {
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(runScan(c.path, ScanFormat::json, out, err), c.status) << c.path;
        EXPECT_EQ(err.str(), "") << c.path;
        const auto json = nlohmann::ordered_json::parse(out.str());
        std::vector<std::string> ids;
        std::vector<std::string> severities;
        for (const auto& issue : json["issues"]) {
            ids.push_back(issue["id"]);
            severities.push_back(issue["severity"]);
        }
        EXPECT_EQ(ids, c.issueOrder) << c.path;
        EXPECT_EQ(severities, c.severities) << c.path;
        ASSERT_EQ(json["checks"].size(), 9U);
        for (std::size_t i = 0; i < 9; ++i) {
            EXPECT_EQ(json["checks"][i]["id"], kCheckTitles[i].id);
            EXPECT_EQ(json["checks"][i]["title"], kCheckTitles[i].title);
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
    // Rows read as in the window (a check without an issue passed), except
    // that a check that threw says so.
    EXPECT_EQ(out.str(), "Scanned App (w/App.xcodeproj) in 0.25 s\n"
                         "\n"
                         "  ✓ Signing Consistency               Passed\n"
                         "  ! App Group Consistency             Warning\n"
                         "  ✓ CloudKit Container Configuration  Passed\n"
                         "  - Deployment Target Mismatch        Check failed: boom\n"
                         "\n"
                         "1 warning • 1 passed • 1 failed\n"
                         "\n"
                         "! warning: App Group Inconsistency [app.group.consistency]\n"
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
