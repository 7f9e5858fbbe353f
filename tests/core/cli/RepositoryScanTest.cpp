#include "cli/RepositoryScan.h"
#include "FakeChecks.h"
#include "ProjectFiles.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace kelvane::cli {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

// An error in the projects whose path says "Bad", a pass elsewhere: the
// projects of one run differ, as they do in a monorepo. Only registered ids
// get a row in a report.
struct ErrorInBadProjects {
    [[nodiscard]] std::string id() const { return "bundle.identifier.collision"; }
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& project) const {
        const bool bad = project.projectURL.find("Bad") != std::string::npos;
        return DoctorIssue{.id = id(),
                           .severity = bad ? Severity::error : Severity::success,
                           .title = "Bad project"};
    }
};

std::vector<AnyCheck> checks() {
    return {ErrorInBadProjects{},
            testing::FakeCheck{"app.group.consistency", testing::FakeCheck::Behaviour::issue,
                               Severity::warning}};
}

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

// Bad (an error and a warning), Broken (no project file), Good (a warning),
// and a Pods project that is never one of them.
class ScanAll : public ::testing::Test {
protected:
    testing::TempDir dir;

    void SetUp() override {
        dir.write("Good/Good.xcodeproj/project.pbxproj", testing::pbxproj(""));
        dir.write("Bad/Bad.xcodeproj/project.pbxproj", testing::pbxproj(""));
        dir.write("Broken/Broken.xcodeproj/README", "");
        dir.write("Pods/Pods.xcodeproj/README", "");
    }

    [[nodiscard]] Outcome all(ScanFormat format, FailOn failOn = FailOn::error) const {
        std::ostringstream out;
        std::ostringstream err;
        const int status = runScanAll(dir.path().string(), {.format = format, .failOn = failOn},
                                      out, err, checks());
        return {status, out.str(), err.str()};
    }

    [[nodiscard]] static Outcome one(const std::string& project, ScanFormat format) {
        std::ostringstream out;
        std::ostringstream err;
        const int status = runScan(project, {.format = format}, out, err, checks());
        return {status, out.str(), err.str()};
    }
};

TEST_F(ScanAll, ExitStatusIsTheWorstOfTheProjects) {
    EXPECT_EQ(all(ScanFormat::json, FailOn::never).status, 2) << "a project was not loaded";
    fs::remove_all(dir.path() / "Broken");
    const std::pair<FailOn, int> cases[] = {
        {FailOn::error, 1}, {FailOn::warning, 1}, {FailOn::never, 0}};
    for (const auto& [failOn, status] : cases) {
        EXPECT_EQ(all(ScanFormat::json, failOn).status, status) << static_cast<int>(failOn);
    }
    fs::remove_all(dir.path() / "Bad");
    EXPECT_EQ(all(ScanFormat::json, FailOn::error).status, 0);
    EXPECT_EQ(all(ScanFormat::json, FailOn::warning).status, 1);
}

// A baseline written over every project holds every project's findings, so
// the next run with it passes; not only the last project's.
TEST_F(ScanAll, OneBaselineRecordsTheFindingsOfEveryProject) {
    fs::remove_all(dir.path() / "Broken");
    const std::string baseline = dir.file("baseline.json");
    const auto run = [&](ReportAdoption adoption) {
        std::ostringstream out;
        std::ostringstream err;
        ScanOptions options{.format = ScanFormat::json, .failOn = FailOn::warning};
        options.adoption = std::move(adoption);
        const int status = runScanAll(dir.path().string(), options, out, err, checks());
        return Outcome{status, out.str(), err.str()};
    };
    const Outcome written = run({.writeBaselineTo = baseline});
    EXPECT_EQ(written.status, 1);
    EXPECT_EQ(written.err, "kelvane: recorded 2 findings in " + baseline + "\n");
    const Outcome again = run({.baseline = adoption::readBaseline(baseline)});
    EXPECT_EQ(again.status, 0) << again.out;
}

TEST_F(ScanAll, AProjectThatDoesNotLoadIsReportedInEveryFormatAndTheOthersGoOn) {
    const std::string broken = dir.file("Broken/Broken.xcodeproj");
    const std::string reason = "Failed to parse project: project.pbxproj not found";
    const std::pair<ScanFormat, std::string> cases[] = {
        {ScanFormat::text, "Could not scan Broken (" + broken + ")\n  " + reason + "\n"},
        {ScanFormat::json, "\"error\": \"" + reason + "\""},
        {ScanFormat::sarif, "Project " + broken + " was not scanned: " + reason},
        {ScanFormat::junit, "<error type=\"notLoaded\" message=\"" + reason + "\"/>"},
        {ScanFormat::github, "::error title=Project not scanned::" + broken + ": " + reason + "\n"},
        {ScanFormat::xcode, broken + ": error: " + reason + "\n"},
    };
    for (const auto& [format, shown] : cases) {
        const Outcome run = all(format);
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.out.find(shown), std::string::npos) << run.out;
        EXPECT_EQ(run.err, "kelvane: " + broken + ": " + reason + "\n");
        // Some formats name files relative to the current folder, so only
        // the end of the path is the same everywhere.
        EXPECT_NE(run.out.find("Good/Good.xcodeproj"), std::string::npos) << run.out;
    }
}

TEST_F(ScanAll, TextIsGroupedByProjectInWalkOrderAndCounted) {
    const std::string text = all(ScanFormat::text).out;
    const std::size_t bad = text.find("Scanned Bad (" + dir.file("Bad/Bad.xcodeproj") + ")");
    const std::size_t broken = text.find("Could not scan Broken (");
    const std::size_t good = text.find("Scanned Good (" + dir.file("Good/Good.xcodeproj") + ")");
    ASSERT_NE(good, std::string::npos) << text;
    EXPECT_LT(bad, broken);
    EXPECT_LT(broken, good);
    EXPECT_TRUE(text.ends_with("\n\n3 projects \u2022 2 scanned \u2022 1 not loaded\n")) << text;
    EXPECT_EQ(text.find("Pods"), std::string::npos);
}

TEST_F(ScanAll, JsonEntriesAreEachProjectsOwnReport) {
    const Json report = Json::parse(all(ScanFormat::json).out);
    EXPECT_EQ(report["path"], dir.path().string());
    ASSERT_EQ(report["projects"].size(), 3U);
    for (const int index : {0, 2}) {
        Json entry = report["projects"][index];
        EXPECT_EQ(entry["error"], nullptr);
        Json own = Json::parse(
            one(entry["project"]["path"].get<std::string>(), ScanFormat::json).out);
        entry.erase("error");
        entry.erase("scanDuration");
        own.erase("scanDuration");
        EXPECT_EQ(entry, own);
    }
    const Json& broken = report["projects"][1];
    EXPECT_EQ(broken["project"], Json({{"path", dir.file("Broken/Broken.xcodeproj")},
                                       {"name", "Broken"}}));
    EXPECT_EQ(broken["checks"], nullptr);
    EXPECT_EQ(broken["issues"], nullptr);
}

TEST_F(ScanAll, SarifHasOneRunWithEveryProjectsResultsAtTheirOwnFiles) {
    const Json sarif = Json::parse(all(ScanFormat::sarif).out);
    ASSERT_EQ(sarif["runs"].size(), 1U);
    const Json& run = sarif["runs"][0];
    const Json& rules = run["tool"]["driver"]["rules"];
    std::map<std::string, std::set<std::string>> filesByProject;
    for (const Json& result : run["results"]) {
        EXPECT_EQ(rules[result["ruleIndex"].get<std::size_t>()]["id"], result["ruleId"]);
        for (const Json& location : result["locations"]) {
            filesByProject[result["properties"]["project"].get<std::string>()].insert(
                location["physicalLocation"]["artifactLocation"]["uri"].get<std::string>());
        }
    }
    EXPECT_EQ(run["results"].size(), 3U) << "Bad: an error and a warning; Good: a warning";
    ASSERT_EQ(filesByProject.size(), 2U);
    const std::set<std::string>& badFiles = filesByProject[dir.file("Bad/Bad.xcodeproj")];
    const std::set<std::string>& goodFiles = filesByProject[dir.file("Good/Good.xcodeproj")];
    ASSERT_FALSE(badFiles.empty());
    ASSERT_FALSE(goodFiles.empty());
    for (const std::string& file : badFiles) {
        EXPECT_FALSE(goodFiles.contains(file)) << file;
    }
    EXPECT_EQ(run["invocations"][0]["toolExecutionNotifications"].size(), 1U);
}

// Times are the only thing that differs between two scans of a project.
std::string withoutTimes(const std::string& xml) {
    return std::regex_replace(xml, std::regex("time=\"[0-9.]+\""), "time=\"T\"");
}

TEST_F(ScanAll, JUnitHasASuitePerProjectWithSummedCounts) {
    const std::string junit = withoutTimes(all(ScanFormat::junit).out);
    EXPECT_NE(junit.find("<testsuites name=\"kelvane\" tests=\"5\" failures=\"3\" errors=\"1\" "
                         "skipped=\"0\" time=\"T\">\n"),
              std::string::npos)
        << junit;
    for (const char* project : {"Bad/Bad.xcodeproj", "Good/Good.xcodeproj"}) {
        const std::string own = withoutTimes(one(dir.file(project), ScanFormat::junit).out);
        const std::size_t start = own.find("  <testsuite ");
        const std::size_t end = own.find("</testsuite>\n") + 13;
        EXPECT_NE(junit.find(own.substr(start, end - start)), std::string::npos) << project;
    }
    EXPECT_NE(junit.find("  <testsuite name=\"kelvane.Broken\" tests=\"1\" failures=\"0\" "
                         "errors=\"1\" skipped=\"0\" time=\"T\">\n"),
              std::string::npos);
    EXPECT_TRUE(junit.ends_with("  </testsuite>\n</testsuites>\n"));
}

TEST(RepositoryScan, AFolderWithSeveralProjectsListsThemAndScansNothing) {
    testing::TempDir dir;
    dir.write("apps/One/One.xcodeproj/project.pbxproj", testing::pbxproj(""));
    dir.write("apps/Two/Two.xcworkspace/contents.xcworkspacedata",
              testing::workspaceData({"group:Pods/Pods.xcodeproj"}));
    dir.write("apps/Two/Pods/Pods.xcodeproj/project.pbxproj", testing::pbxproj(""));
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runRepositoryScan(dir.file("apps"), false, {}, out, err, checks()), 2);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(err.str(), "kelvane: 2 projects in " + dir.file("apps") +
                             ":\n  One/One.xcodeproj\n  Two/Two.xcworkspace\n"
                             "Pass one of them, or --all to scan them all.\n");
}

// The command line: the current folder by default, and an --all report is
// written to its file even when one project did not load.
} // namespace
} // namespace kelvane::cli
