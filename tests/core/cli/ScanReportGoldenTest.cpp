#include "ProjectFiles.h"
#include "TempDir.h"
#include "cli/ScanCommand.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace kelvane::cli {
namespace {

// The misconfigured example, as a CI job in the repository's root would name it.
constexpr const char* kNimbus = "examples/Nimbus/Nimbus.xcworkspace";
// The example whose values come from .xcconfig files, read as built.
constexpr const char* kCirrus = "examples/Cirrus/Cirrus.xcodeproj";

std::string readText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The one value that differs between runs is the scan's duration.
std::string withoutDuration(std::string report) {
    report = std::regex_replace(report, std::regex(R"(in [0-9]+\.[0-9]+ s\n)"), "in 0.00 s\n");
    report = std::regex_replace(report, std::regex(R"("scanDuration": [-+.e0-9]+)"),
                                "\"scanDuration\": 0.0");
    return std::regex_replace(report, std::regex(R"#(time="[0-9]+\.[0-9]+")#"), "time=\"0.000\"");
}

// Report paths are the ones given, so these run from the repository's root.
class ScanReport : public ::testing::Test {
protected:
    void SetUp() override { std::filesystem::current_path(testing::sourceDir()); }
    void TearDown() override { std::filesystem::current_path(previous_); }

    struct Run {
        int status;
        std::string out;
        std::string err;
    };
    static Run scan(const std::string& path, ScanOptions options,
                    std::vector<AnyCheck> checks = makeCheckRegistry()) {
        std::ostringstream out;
        std::ostringstream err;
        const int status = runScan(path, options, out, err, std::move(checks));
        return {status, out.str(), err.str()};
    }

private:
    std::filesystem::path previous_ = std::filesystem::current_path();
};

// KELVANE_UPDATE_GOLDENS=1 rewrites the golden files from the current output
// instead of comparing; review the diff before committing it.
// Both readings: the literal one on the misconfigured example, and as built
// on the one whose values live in .xcconfig files, located at their lines.
TEST_F(ScanReport, EveryFormatOfTheExamplesMatchesItsGoldenFile) {
    const bool update = std::getenv("KELVANE_UPDATE_GOLDENS") != nullptr;
    const std::vector<std::pair<ScanFormat, std::string>> formats{
        {ScanFormat::text, "txt"},      {ScanFormat::json, "json"},
        {ScanFormat::sarif, "sarif"},   {ScanFormat::junit, "junit.xml"},
        {ScanFormat::github, "github"}, {ScanFormat::xcode, "xcode"},
    };
    struct Example {
        const char* path;
        bool asBuilt;
        std::string golden;
        int status;
    };
    for (const Example& example : {Example{kNimbus, false, "Nimbus.scan.", 1},
                                   Example{kCirrus, true, "Cirrus.built.", 0}}) {
        for (const auto& [format, extension] : formats) {
            ScanOptions options{.format = format};
            options.reading.asBuilt = example.asBuilt;
            const Run run = scan(example.path, options,
                                 example.asBuilt ? makeAsBuiltCheckRegistry() : makeCheckRegistry());
            const std::filesystem::path golden = "tests/fixtures/scan/" + example.golden + extension;
            EXPECT_EQ(run.status, example.status) << golden;
            EXPECT_EQ(run.err, "") << golden;
            if (update) {
                std::ofstream(golden, std::ios::binary) << withoutDuration(run.out);
                continue;
            }
            EXPECT_EQ(withoutDuration(run.out), readText(golden)) << golden;
        }
    }
}

// What GitHub code scanning rejects or misplaces: a missing version, runs
// without a driver and rules, results without a rule, level, message or a
// location it can resolve inside the repository.
TEST_F(ScanReport, SarifHasTheStructureCodeScanningRequires) {
    const std::string absolute = (testing::sourceDir() / kNimbus).string();
    for (const std::string& path : {std::string(kNimbus), absolute}) {
        const auto sarif = nlohmann::json::parse(scan(path, {.format = ScanFormat::sarif}).out);
        EXPECT_EQ(sarif["version"], "2.1.0");
        EXPECT_TRUE(sarif["$schema"].is_string());
        ASSERT_EQ(sarif["runs"].size(), 1U);
        const auto& run = sarif["runs"][0];
        EXPECT_EQ(run["tool"]["driver"]["name"], "Kelvane");
        const auto& rules = run["tool"]["driver"]["rules"];
        ASSERT_EQ(rules.size(), 9U);
        std::set<std::string> ruleIDs;
        for (const auto& rule : rules) {
            ruleIDs.insert(rule["id"].get<std::string>());
            EXPECT_FALSE(rule["shortDescription"]["text"].get<std::string>().empty());
        }
        EXPECT_EQ(ruleIDs.size(), 9U) << "rule ids must be unique";

        const auto& results = run["results"];
        ASSERT_EQ(results.size(), 9U) << "five errors and four warnings";
        for (const auto& result : results) {
            const std::string ruleID = result["ruleId"];
            EXPECT_EQ(rules[result["ruleIndex"].get<std::size_t>()]["id"], ruleID);
            EXPECT_TRUE(result["level"] == "error" || result["level"] == "warning") << ruleID;
            EXPECT_FALSE(result["message"]["text"].get<std::string>().empty()) << ruleID;
            ASSERT_FALSE(result["locations"].empty()) << ruleID;
            for (const auto& location : result["locations"]) {
                const auto& physical = location["physicalLocation"];
                const std::string uri = physical["artifactLocation"]["uri"];
                EXPECT_EQ(uri.rfind("examples/Nimbus/", 0), 0U) << uri << " from " << path;
                EXPECT_EQ(uri.find(' '), std::string::npos) << uri;
                EXPECT_GE(physical["region"]["startLine"].get<int>(), 1) << uri;
            }
        }
        // A result points at the file its evidence came from.
        EXPECT_EQ(results[0]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"],
                  "examples/Nimbus/Nimbus%20WatchKit%20App/Info.plist");
    }
}

TEST_F(ScanReport, ExitStatusFollowsTheFailOnThreshold) {
    struct Case {
        const char* path;
        FailOn failOn;
        int status;
    };
    const std::vector<Case> cases{
        {"examples/Aurora/Aurora.xcodeproj", FailOn::warning, 0},
        {"examples/Aurora/Aurora.xcodeproj", FailOn::error, 0},
        {kNimbus, FailOn::error, 1},
        {kNimbus, FailOn::warning, 1},
        {kNimbus, FailOn::never, 0},
        {"examples/Nimbus", FailOn::never, 2}, // two workspaces: nothing scanned
    };
    for (const Case& c : cases) {
        for (const ScanFormat format : {ScanFormat::text, ScanFormat::sarif}) {
            const Run run = scan(c.path, {.format = format, .failOn = c.failOn});
            EXPECT_EQ(run.status, c.status) << c.path << " " << static_cast<int>(c.failOn);
        }
    }
}

TEST_F(ScanReport, FolderIsResolvedByTheSelectionRulesAndItsErrorsExitWithTwo) {
    testing::TempDir dir;
    dir.write("Sub/App.xcodeproj/project.pbxproj", testing::pbxproj(""));
    dir.write("Empty/readme.txt", "");
    const Run found = scan(dir.file("Sub"), {.format = ScanFormat::json});
    EXPECT_EQ(found.status, 0) << found.err;
    EXPECT_EQ(nlohmann::json::parse(found.out)["project"]["path"],
              dir.file("Sub") + "/App.xcodeproj");

    const Run none = scan(dir.file("Empty"), {});
    EXPECT_EQ(none.status, 2);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err, "kelvane: No .xcodeproj or .xcworkspace found in the selected folder.\n");
}

} // namespace
} // namespace kelvane::cli
