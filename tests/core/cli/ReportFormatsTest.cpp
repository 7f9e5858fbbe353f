#include "FakeChecks.h"
#include "ProjectFiles.h"
#include "TempDir.h"
#include "cli/GitHubAnnotations.h"
#include "cli/JUnitReport.h"
#include "cli/LiveProgress.h"
#include "report/ProgressRowText.h"
#include "report/SarifReport.h"
#include "cli/ScanCommand.h"
#include "cli/Terminal.h"
#include "cli/XcodeDiagnostics.h"
#include "scanner/ScanViewModel.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <string>

namespace kelvane::cli {
using namespace kelvane::report;
namespace {

// A scan of one finding whose texts carry every character some format
// must escape.
FinishedScan awkwardScan() {
    const DoctorIssue issue{
        .id = "app.group.consistency",
        .severity = Severity::error,
        .title = "Groups <a> & \"b\", 100%: bad",
        .description = "line one\nline two\x01",
        .impact = "r\rn",
        .evidence = {{BuildSettingSource{"App", "Debug"}, "K", "V", std::nullopt}},
    };
    return FinishedScan{
        .projectPath = "w/App.xcodeproj",
        .projectName = "App",
        .scanDuration = 1.5,
        .report = {.issues = {issue},
                   .checks = {{"app.group.consistency", issue, std::nullopt},
                              {"signing.inconsistent", std::nullopt, "read <failed>"},
                              {"cloudkit.container.mismatch", std::nullopt, std::nullopt}}},
    };
}

TargetContext target(std::string name, std::optional<std::string> infoPlist = {},
                     std::optional<std::string> entitlements = {}) {
    TargetContext target;
    target.name = std::move(name);
    target.infoPlistURL = std::move(infoPlist);
    target.entitlementsURL = std::move(entitlements);
    return target;
}

EvidenceLocations locationsIn(ProjectContext project) {
    return EvidenceLocations(std::make_shared<const ProjectContext>(std::move(project)));
}

EvidenceLocations appFiles() {
    return locationsIn(ProjectContext{.projectURL = "w/App.xcodeproj", .targets = {}});
}

TEST(ReportFormats, GitHubCommandsEscapeLineBreaksPercentAndPropertySeparators) {
    std::ostringstream out;
    writeGitHubAnnotations(awkwardScan(), appFiles(), out);
    EXPECT_EQ(out.str(), "::error file=w/App.xcodeproj/project.pbxproj,"
                         "title=Groups <a> & \"b\"%2C 100%25%3A bad (app.group.consistency)"
                         "::line one%0Aline two\x01%0A%0AImpact: r%0Dn\n");
}

TEST(ReportFormats, SarifTellsOfChecksThatThrewAndEncodesLocations) {
    std::ostringstream out;
    FinishedScan scan = awkwardScan();
    scan.report.issues[0].evidence[0].source = PlistSource{"My App", "Info.plist"};
    const EvidenceLocations files = locationsIn(ProjectContext{
        .projectURL = "w/App.xcodeproj", .targets = {target("My App", "w/My App/Info+1.plist")}});
    writeSarifReport(scan, files, out);
    const auto run = nlohmann::json::parse(out.str())["runs"][0];
    EXPECT_EQ(run["results"][0]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"],
              "w/My%20App/Info%2B1.plist");
    EXPECT_EQ(run["results"][0]["ruleIndex"], 0);
    const auto& notifications = run["invocations"][0]["toolExecutionNotifications"];
    ASSERT_EQ(notifications.size(), 1U);
    EXPECT_EQ(notifications[0]["message"]["text"],
              "Check signing.inconsistent failed: read <failed>");
    EXPECT_EQ(notifications[0]["descriptor"]["id"], "signing.inconsistent");
}

TEST(ReportFormats, JUnitEscapesMarkupAndDropsCharactersXmlCannotHold) {
    std::ostringstream out;
    writeJUnitReport(awkwardScan(), out);
    const std::string xml = out.str();
    EXPECT_NE(xml.find("tests=\"3\" failures=\"1\" errors=\"1\" skipped=\"1\" time=\"1.500\""),
              std::string::npos)
        << xml;
    EXPECT_NE(xml.find("message=\"Groups &lt;a&gt; &amp; &quot;b&quot;, 100%: bad\">"
                       "line one\nline two\n\nImpact: r&#13;n</failure>"),
              std::string::npos)
        << xml;
    EXPECT_NE(xml.find("<error type=\"checkFailed\" message=\"read &lt;failed&gt;\"/>"),
              std::string::npos)
        << xml;
    EXPECT_EQ(xml.find('\x01'), std::string::npos);
}

TEST(ReportFormats, XcodeLinesNameTheEvidenceFileOrTheProjectWhenItCannotBeFound) {
    std::ostringstream out;
    writeXcodeDiagnostics(awkwardScan(), appFiles(), out);
    writeXcodeDiagnostics(awkwardScan(), EvidenceLocations(), out);
    EXPECT_EQ(out.str(), "w/App.xcodeproj/project.pbxproj: error: Groups <a> & \"b\", 100%: bad\n"
                         "w/App.xcodeproj: error: Groups <a> & \"b\", 100%: bad\n");
}

TEST(ReportFormats, EvidenceFilesComeFromTheTargetsSettings) {
    const EvidenceLocations files = locationsIn(ProjectContext{
        .projectURL = "p/App.xcodeproj",
        .targets = {target("App", "p/App/Info.plist", "p/App/App.entitlements"), target("Bare")}});
    const std::vector<std::pair<EvidenceSource, std::string>> cases{
        {PlistSource{"App", "Info.plist"}, "p/App/Info.plist"},
        {EntitlementsSource{"App", "Entitlements"}, "p/App/App.entitlements"},
        {BuildSettingSource{"App", "Debug"}, "p/App.xcodeproj/project.pbxproj"},
        {FrameworkReferenceSource{"App"}, "p/App.xcodeproj/project.pbxproj"},
        // A target without the file, or one the project does not have.
        {PlistSource{"Bare", "Info.plist"}, "p/App.xcodeproj/project.pbxproj"},
        {EntitlementsSource{"Gone", "Entitlements"}, "p/App.xcodeproj/project.pbxproj"},
    };
    for (const auto& [source, file] : cases) {
        const auto located = files.locate({source, "KEY", "value", {}});
        EXPECT_EQ(located, (EvidenceLocation{file, 0, 0})) << locationDescription(source);
    }
    const DoctorIssue twice{.evidence = {{PlistSource{"App", "Info.plist"}, "a", "b", {}},
                                         {BuildSettingSource{"App", "Debug"}, "c", "d", {}},
                                         {PlistSource{"App", "Info.plist"}, "e", "f", {}}}};
    EXPECT_EQ(files.locationsFor(twice),
              (std::vector<EvidenceLocation>{{"p/App/Info.plist"},
                                             {"p/App.xcodeproj/project.pbxproj"}}));
    // What `scan .` joins onto the current folder is shown as the repository
    // lists it.
    EXPECT_EQ(relativeToCurrentFolder("././App/Info.plist"), "App/Info.plist");
}

TEST(ReportFormats, ColourFollowsTheChoiceThenTheTerminalThenNoColor) {
    struct Case {
        ColorChoice choice;
        bool terminal;
        const char* noColor;
        bool color;
    };
    const std::vector<Case> cases{
        {ColorChoice::automatic, true, nullptr, true},
        {ColorChoice::automatic, true, "", true}, // set but empty does not count
        {ColorChoice::automatic, true, "1", false},
        {ColorChoice::automatic, false, nullptr, false},
        {ColorChoice::always, false, "1", true},
        {ColorChoice::never, true, nullptr, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(useColor(c.choice, c.terminal, c.noColor), c.color)
            << static_cast<int>(c.choice) << c.terminal << (c.noColor ? c.noColor : "unset");
    }
}

TEST(ReportFormats, RowsShowMarkAndLabelByStatusAndSeverity) {
    const TextStyle plain;
    const auto line = [&](CheckStatus status, std::optional<Severity> severity) {
        CheckProgress row{.id = "a", .title = "Alpha", .status = status};
        if (severity) {
            row.issue = DoctorIssue{.severity = *severity};
        }
        return progressRowLine(row, plain, 0, 7);
    };
    EXPECT_EQ(line(CheckStatus::pending, std::nullopt), "  · Alpha");
    EXPECT_EQ(line(CheckStatus::running, std::nullopt), "  ⠋ Alpha");
    EXPECT_EQ(line(CheckStatus::completed, Severity::success), "  ✓ Alpha    Passed");
    EXPECT_EQ(line(CheckStatus::completed, std::nullopt), "  ✓ Alpha    Passed");
    EXPECT_EQ(line(CheckStatus::completed, Severity::warning), "  ! Alpha    Warning");
    EXPECT_EQ(line(CheckStatus::completed, Severity::error), "  ✗ Alpha    Issue detected");

    const TextStyle colored{.color = true};
    const CheckProgress failed{.id = "e",
                               .title = "E",
                               .status = CheckStatus::completed,
                               .issue = DoctorIssue{.severity = Severity::error}};
    EXPECT_EQ(progressRowLine(failed, colored, 0, 1),
              "  \x1b[31m✗\x1b[0m E  \x1b[31mIssue detected\x1b[0m");
}

// The live view redraws in place: every frame after the first climbs back
// over the lines the previous frame drew.
TEST(LiveView, RedrawsEachStateInPlaceAndTakesItsRowsAwayOnFailure) {
    std::ostringstream out;
    LiveProgress live(out, TextStyle{});
    const std::vector<CheckProgress> rows = ScanViewModel::initialProgress();
    live.show(ScanningState{"w/App.xcodeproj", rows});
    const std::string first = out.str();
    EXPECT_EQ(first.find("\x1b[11F"), std::string::npos) << "nothing to climb over yet";
    EXPECT_NE(first.find("Scanning App (w/App.xcodeproj)  0/9"), std::string::npos);
    EXPECT_NE(first.find("⠋ Watch Companion Bundle ID"), std::string::npos);

    live.tick();
    const std::string ticked = out.str().substr(first.size());
    EXPECT_EQ(ticked.rfind("\x1b[11F", 0), 0U) << "heading, blank line and nine rows";
    EXPECT_NE(ticked.find("⠙ Watch Companion Bundle ID"), std::string::npos);

    live.show(ErrorState{"Failed to parse project: x"});
    EXPECT_TRUE(out.str().ends_with("\x1b[11F\x1b[J"));
    EXPECT_FALSE(live.scanning());
    const std::size_t before = out.str().size();
    live.tick();
    EXPECT_EQ(out.str().size(), before) << "the spinner stops with the scan";
}

TEST(LiveView, ScanDrawnLiveEndsWithTheFinalRowsAndFindings) {
    const std::vector<AnyCheck> checks{
        testing::FakeCheck{"watch.companion.mismatch", testing::FakeCheck::Behaviour::issue,
                           Severity::warning},
        testing::FakeCheck{"signing.inconsistent", testing::FakeCheck::Behaviour::failure,
                           Severity::success, "unreadable"}};
    testing::TempDir dir;
    dir.write("App.xcodeproj/project.pbxproj", testing::pbxproj(""));
    std::ostringstream out;
    std::ostringstream err;
    const int status =
        runScan(dir.file("App.xcodeproj"), ScanOptions{.live = true}, out, err, checks);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(err.str(), "Check signing.inconsistent failed: unreadable\n");
    const std::string text = out.str();
    const std::size_t final = text.find("Scanned App (");
    ASSERT_NE(final, std::string::npos) << text;
    EXPECT_NE(text.find("! Watch Companion Bundle ID", final), std::string::npos);
    EXPECT_NE(text.find("- Signing Consistency", final), std::string::npos);
    EXPECT_NE(text.find("1 warning • 1 failed", final), std::string::npos) << text;
}

} // namespace
} // namespace kelvane::cli
