#include "KelvaneProcess.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace kelvane::testing {
namespace {

namespace fs = std::filesystem;

std::string readText(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void replaceIn(const std::string& file, const std::string& from, const std::string& to) {
    std::string text = readText(file);
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from << " in " << file;
    text.replace(at, from.size(), to);
    std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
}

// The issues reported as findings, not passes.
std::vector<std::string> issueIds(const ProcessOutcome& run) {
    std::vector<std::string> ids;
    const nlohmann::json report = nlohmann::json::parse(run.out);
    for (const auto& issue : report["issues"]) {
        if (issue["severity"] != "success") {
            ids.push_back(issue["id"]);
        }
    }
    return ids;
}

struct RoundTrip {
    std::string example;
    std::string bundle;
    std::vector<std::string> reading;
    // Changes one value in the copy, and the one issue that must come back
    // with a line holding `newText`.
    std::function<void(const TempDir&)> change;
    std::string returningIssue;
    std::string newText;
};

TEST(Baseline, RoundTripReportsOnlyTheChangedFinding) {
    const std::vector<RoundTrip> cases{
        {"Nimbus", "Nimbus.xcworkspace", {},
         [](const TempDir& dir) {
             replaceIn(dir.file("P/Nimbus WatchKit App/Info.plist"), "com.example.nimbusapp",
                       "com.example.nimbuswatch");
         },
         "watch.companion.mismatch", "com.example.nimbuswatch"},
        {"Cirrus", "Cirrus.xcodeproj", {"--as-built"},
         [](const TempDir& dir) {
             replaceIn(dir.file("P/Cirrus.xcodeproj/project.pbxproj"),
                       "DEVELOPMENT_TEAM = ZZZZZ99999;", "DEVELOPMENT_TEAM = YYYYY77777;");
         },
         "signing.inconsistent", "YYYYY77777"},
    };
    for (const RoundTrip& c : cases) {
        SCOPED_TRACE(c.example);
        const TempDir dir;
        fs::copy(sourceDir() / "examples" / c.example, dir.path() / "P", fs::copy_options::recursive);
        const auto scan = [&](std::vector<std::string> extra) {
            std::vector<std::string> arguments{"scan", dir.file("P/" + c.bundle), "--format",
                                               "json", "--fail-on", "warning"};
            arguments.insert(arguments.end(), c.reading.begin(), c.reading.end());
            arguments.insert(arguments.end(), extra.begin(), extra.end());
            return runKelvane(arguments, dir.path().string());
        };

        const ProcessOutcome recorded = scan({"--write-baseline", "known.json"});
        ASSERT_EQ(recorded.status, 1) << recorded.err;
        EXPECT_FALSE(issueIds(recorded).empty());

        const ProcessOutcome again = scan({"--baseline", "known.json"});
        EXPECT_EQ(again.status, 0) << again.err;
        EXPECT_EQ(issueIds(again), std::vector<std::string>{});
        const ProcessOutcome text = scan({"--baseline", "known.json", "--format", "text"});
        EXPECT_EQ(text.out.find("error:"), std::string::npos) << text.out;
        EXPECT_EQ(text.out.find("warning:"), std::string::npos) << text.out;

        c.change(dir);
        const ProcessOutcome changed = scan({"--baseline", "known.json"});
        EXPECT_EQ(changed.status, 1) << changed.err;
        ASSERT_EQ(issueIds(changed), std::vector<std::string>{c.returningIssue});
        const std::string description = nlohmann::json::parse(changed.out)["issues"][0]["description"];
        EXPECT_NE(description.find(c.newText), std::string::npos) << description;
    }
}

struct ConfigRun {
    std::string name;
    std::string config;
    std::vector<std::string> options;
    int status;
    // The check rows the JSON report lists, or the error line.
    std::vector<std::string> rows;
    std::string error;
};

TEST(ConfigFile, SetsTheScanAndTheCommandLineWins) {
    const std::vector<ConfigRun> cases{
        {"only", "only: [signing.inconsistent, test.host.missing]\n", {}, 0,
         {"signing.inconsistent"}, ""},
        {"reading as built brings its checks",
         "reading: as-built\nonly: [signing.inconsistent, test.host.missing]\n", {}, 0,
         {"signing.inconsistent", "test.host.missing"}, ""},
        {"--only wins over the file", "only: [signing.inconsistent]\n",
         {"--only", "deployment.target.mismatch", "--only", "signing.inconsistent"}, 0,
         {"signing.inconsistent", "deployment.target.mismatch"}, ""},
        {"skip from the file, only from the command line", "skip: [signing.inconsistent]\n",
         {"--only", "signing.inconsistent", "--only", "deployment.target.mismatch"}, 0,
         {"deployment.target.mismatch"}, ""},
        {"unknown key", "# CI\nskip: []\nskp: [a]\n", {}, 2, {},
         "kelvane: .kelvane.yml:3: unknown key 'skp' (known: skip, only, exclude, baseline, "
         "reading, configuration)\n"},
        {"unknown check in the file", "only:\n  - signing.inconsistent\n  - sign.typo\n", {}, 2, {},
         "kelvane: .kelvane.yml:3: unknown check 'sign.typo' in only (known: "},
        {"unknown check on the command line", "", {"--skip", "nope"}, 2, {},
         "kelvane: --skip: unknown check 'nope' (known: watch.companion.mismatch, "},
        {"configuration without the as-built reading", "configuration: Release\n", {}, 2, {},
         "kelvane: .kelvane.yml:1: 'configuration' needs 'reading: as-built'\n"},
        {"--configuration with the file's reading",
         "reading: as-built\nonly: [signing.inconsistent]\n", {"--configuration", "Release"}, 0,
         {"signing.inconsistent"}, ""},
        {"--configuration with no reading as built", "", {"--configuration", "Release"}, 2, {},
         "kelvane: --configuration needs --as-built (or 'reading: as-built' in .kelvane.yml)\n"},
        {"a baseline that is not there", "baseline: missing.json\n", {}, 2, {},
         "kelvane: ./missing.json: "},
    };
    for (const ConfigRun& c : cases) {
        SCOPED_TRACE(c.name);
        const TempDir dir;
        fs::copy(sourceDir() / "examples" / "Cirrus", dir.path() / "P", fs::copy_options::recursive);
        if (!c.config.empty()) {
            dir.write(".kelvane.yml", c.config);
        }
        std::vector<std::string> arguments{"scan", dir.file("P/Cirrus.xcodeproj"), "--format",
                                           "json"};
        arguments.insert(arguments.end(), c.options.begin(), c.options.end());
        const ProcessOutcome run = runKelvane(arguments, dir.path().string());
        EXPECT_EQ(run.status, c.status) << run.err;
        if (c.status == 2) {
            EXPECT_TRUE(run.err.starts_with(c.error)) << run.err;
            EXPECT_EQ(run.out, "");
            continue;
        }
        std::vector<std::string> rows;
        const nlohmann::json report = nlohmann::json::parse(run.out);
        for (const auto& check : report["checks"]) {
            rows.push_back(check["id"]);
        }
        EXPECT_EQ(rows, c.rows);
    }
}

TEST(ConfigFile, IsReadAtTheScannedFolderAndExcludesItsFolders) {
    const TempDir dir;
    fs::create_directories(dir.path() / "repo" / "Vendor");
    fs::copy(sourceDir() / "examples" / "Cirrus", dir.path() / "repo" / "Vendor" / "Cirrus",
             fs::copy_options::recursive);
    dir.write("repo/.kelvane.yml", "exclude: [Vendor/]\n");
    const ProcessOutcome folder = runKelvane({"scan", dir.file("repo"), "--format", "json"});
    EXPECT_EQ(folder.status, 2);
    EXPECT_EQ(folder.out, "");
    EXPECT_NE(folder.err.find("Vendor"), std::string::npos) << folder.err;
    // Named outright, the project is scanned.
    const ProcessOutcome bundle =
        runKelvane({"scan", dir.file("repo/Vendor/Cirrus/Cirrus.xcodeproj"), "--format", "json"},
                   dir.file("repo"));
    EXPECT_EQ(bundle.status, 0) << bundle.err;
}

// The command line a developer types at a repository's root: the folder is
// the current one by default, and --all writes every project's report.
TEST(RepositoryCommand, DefaultsToTheCurrentFolderAndWritesAllReports) {
    const TempDir dir;
    const std::string workspace = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Workspace version = "
                                  "\"1.0\">\n<FileRef location = \"group:App.xcodeproj\"></FileRef>\n"
                                  "<FileRef location = \"group:Pods/Pods.xcodeproj\"></FileRef>\n</Workspace>\n";
    dir.write("App.xcworkspace/contents.xcworkspacedata", workspace);
    dir.write("App.xcodeproj/project.pbxproj", "// !$*UTF8*$!\n{ objects = {}; }\n");
    dir.write("tools/Broken.xcodeproj/README", "");
    const std::string folder = dir.path().string();

    const ProcessOutcome single =
        runKelvane({"scan", "--format", "json", "App.xcworkspace"}, folder);
    EXPECT_EQ(single.status, 0) << single.err;
    EXPECT_EQ(nlohmann::json::parse(single.out)["project"]["path"], "App.xcworkspace");
    EXPECT_EQ(runKelvane({"scan", "--format", "json"}, folder).status, 2);

    const ProcessOutcome everything =
        runKelvane({"scan", "--all", "--format", "json", "--output", "all.json"}, folder);
    EXPECT_EQ(everything.status, 2);
    EXPECT_EQ(everything.out, "");
    std::ifstream file(dir.file("all.json"));
    const nlohmann::json written = nlohmann::json::parse(file);
    ASSERT_EQ(written["projects"].size(), 2U);
    EXPECT_EQ(written["projects"][0]["project"]["path"], "App.xcworkspace");
    EXPECT_EQ(written["projects"][1]["project"]["path"], "tools/Broken.xcodeproj");
}

} // namespace
} // namespace kelvane::testing
