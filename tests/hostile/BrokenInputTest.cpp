#include "HostileFiles.h"
#include "KelvaneProcess.h"
#include "ProjectFiles.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace kelvane::testing {
namespace {

using namespace hostile;
namespace fs = std::filesystem;

enum class Outcome {
    // Exit status 2, nothing on standard output, one line on standard error.
    notLoaded,
    // The scan completes; the checks that read the broken file fail, each
    // with one line on standard error and an `error` in its JSON row.
    checkFails,
    // The scan completes with every check answering.
    scans,
};

struct BrokenInput {
    std::string name;
    // Lays the input out in `dir` and returns the path to scan.
    std::function<std::string(const TempDir& dir)> build;
    Outcome outcome;
    // The file the message must name, relative to `dir`; empty when the
    // message is one of the fixed texts, which then is `reason` whole.
    std::string failingFile;
    std::vector<std::string> reason;
    std::set<std::string> failingChecks{};
    // Root reads files whatever their permissions say.
    bool needsPermissions = false;
};

const std::set<std::string> kEntitlementChecks{
    "cloudkit.container.mismatch", "app.group.consistency", "entitlement.without.capability"};
const std::set<std::string> kInfoPlistChecks{"watch.companion.mismatch"};

constexpr std::size_t kHundredMegabytes = 100u << 20;

std::function<std::string(const TempDir&)> projectFile(std::function<std::string()> bytes) {
    return [bytes = std::move(bytes)](const TempDir& dir) {
        return writeProject(dir, bytes());
    };
}

std::function<std::string(const TempDir&)> entitlements(std::function<std::string()> bytes) {
    return [bytes = std::move(bytes)](const TempDir& dir) {
        return writeProjectReading(dir, bytes(), goodWatchInfoPlist());
    };
}

std::function<std::string(const TempDir&)> watchInfoPlist(std::function<std::string()> bytes) {
    return [bytes = std::move(bytes)](const TempDir& dir) {
        return writeProjectReading(dir, goodEntitlements(), bytes());
    };
}

std::function<std::string(const TempDir&)> workspace(std::string bytes) {
    return [bytes = std::move(bytes)](const TempDir& dir) {
        dir.write("deep/er/App.xcworkspace/contents.xcworkspacedata", bytes);
        return dir.file("deep/er/App.xcworkspace");
    };
}

const std::string kProjectFile = "App.xcodeproj/project.pbxproj";

// Far beyond any real project; made sparse, so it costs no disk.
constexpr std::uintmax_t kHugeFile = std::uintmax_t{4} << 30;

std::string sparse(const TempDir& dir, const std::string& relative, std::string_view head) {
    const std::string path = dir.write(relative, head);
    fs::resize_file(path, kHugeFile);
    return path;
}

std::vector<BrokenInput> brokenInputs() {
    return {
        {"ProjectFileIsAFolder",
         [](const TempDir& dir) {
             fs::create_directories(dir.path() / kProjectFile);
             return dir.file("App.xcodeproj");
         },
         Outcome::notLoaded,
         kProjectFile,
         {"Is a directory"}},
        {"ProjectFileIsAFifo",
         [](const TempDir& dir) {
             fs::create_directories(dir.path() / "App.xcodeproj");
             if (mkfifo(dir.file(kProjectFile).c_str(), 0600) != 0) {
                 throw std::runtime_error("mkfifo failed");
             }
             return dir.file("App.xcodeproj");
         },
         Outcome::notLoaded,
         kProjectFile,
         {"Not a regular file"}},
        {"ProjectFileUnreadable",
         [](const TempDir& dir) {
             const std::string path = writeProject(dir, pbxproj(""));
             fs::permissions(dir.path() / kProjectFile, fs::perms::none);
             return path;
         },
         Outcome::notLoaded,
         kProjectFile,
         {"Permission denied"},
         {},
         true},
        {"ProjectFileEmpty",
         projectFile([] { return std::string(); }),
         Outcome::notLoaded,
         kProjectFile,
         {":1:1: "}},
        {"ProjectFileNotUtf8",
         projectFile([] { return pbxproj("\t\tX = {isa = \"caf\xC3\x28\"; };\n"); }),
         Outcome::notLoaded,
         kProjectFile,
         {":8:18: ", "UTF-8"}},
        {"ProjectFileWithNulByte",
         projectFile([] { return pbxproj(std::string("\t\tX = {isa = A\0B; };\n", 21)); }),
         Outcome::notLoaded,
         kProjectFile,
         {":8:"}},
        {"HundredThousandNestedArrays",
         projectFile([] { return nestedArrays(100'000, true); }),
         Outcome::notLoaded,
         kProjectFile,
         {"nesting deeper than"}},
        {"HundredMegabyteStringUnclosed",
         projectFile([] { return hugeQuotedString(kHundredMegabytes, false); }),
         Outcome::notLoaded,
         kProjectFile,
         {":5:"}},
        {"HundredMegabyteString",
         projectFile([] { return hugeQuotedString(kHundredMegabytes, true); }),
         Outcome::scans,
         "",
         {}},
        {"ReferencesPointNowhereOrAtThemselves",
         projectFile(danglingAndSelfReferences),
         Outcome::scans,
         "",
         {}},
        {"BinaryProjectOffsetPastEnd",
         projectFile(binaryOffsetPastEnd),
         Outcome::notLoaded,
         kProjectFile,
         {"out of range"}},
        {"BinaryProjectCycle",
         projectFile(binaryCycle),
         Outcome::notLoaded,
         kProjectFile,
         {"contains itself"}},
        {"BinaryProjectExpansion",
         projectFile(binaryExpansion),
         Outcome::notLoaded,
         kProjectFile,
         {"expands to more than"}},
        {"BinaryProjectCountPastEnd",
         projectFile(binaryCountPastEnd),
         Outcome::notLoaded,
         kProjectFile,
         {"runs past"}},
        {"HugeBinaryProjectFile",
         [](const TempDir& dir) {
             sparse(dir, kProjectFile, "bplist00");
             return dir.file("App.xcodeproj");
         },
         Outcome::notLoaded,
         kProjectFile,
         {"File too large"}},
        {"HugeTextProjectFile",
         [](const TempDir& dir) {
             sparse(dir, kProjectFile, "// !$*UTF8*$!\n{\n\tobjects = {};\n\ttail = \"");
             return dir.file("App.xcodeproj");
         },
         Outcome::notLoaded,
         kProjectFile,
         {"File too large"}},
        {"HugeEntitlements",
         [](const TempDir& dir) {
             const std::string path = writeProjectReading(dir, "", goodWatchInfoPlist());
             sparse(dir, std::string(kEntitlementsFile), "bplist00");
             return path;
         },
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {"File too large"},
         kEntitlementChecks},
        {"EntitlementsOffsetPastEnd",
         entitlements(binaryOffsetPastEnd),
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {"out of range"},
         kEntitlementChecks},
        {"EntitlementsCycle",
         entitlements(binaryCycle),
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {"contains itself"},
         kEntitlementChecks},
        {"EntitlementsExpansion",
         entitlements(binaryExpansion),
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {"expands to more than"},
         kEntitlementChecks},
        {"EntitlementsCountPastEnd",
         entitlements(binaryCountPastEnd),
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {"runs past"},
         kEntitlementChecks},
        {"EntitlementsUnclosedElements",
         entitlements(xmlUnclosed),
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {":7:"},
         kEntitlementChecks},
        {"EntitlementsWithByteOrderMark",
         entitlements(xmlWithByteOrderMark),
         Outcome::scans,
         "",
         {}},
        {"EntitlementsBillionLaughs",
         entitlements(xmlBillionLaughs),
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {"entity"},
         kEntitlementChecks},
        {"EntitlementsIntegerNotANumber",
         entitlements(xmlIntegerNotANumber),
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {":6:", "abc"},
         kEntitlementChecks},
        {"EntitlementsKeyWithoutValue",
         entitlements(xmlKeyWithoutValue),
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {":6:"},
         kEntitlementChecks},
        {"EntitlementsFifo",
         [](const TempDir& dir) {
             const std::string path = writeProjectReading(dir, "", goodWatchInfoPlist());
             fs::remove(dir.path() / kEntitlementsFile);
             if (mkfifo(dir.file(kEntitlementsFile).c_str(), 0600) != 0) {
                 throw std::runtime_error("mkfifo failed");
             }
             return path;
         },
         Outcome::checkFails,
         std::string(kEntitlementsFile),
         {"Not a regular file"},
         kEntitlementChecks},
        {"InfoPlistLinksToADevice",
         [](const TempDir& dir) {
             const std::string path = writeProjectReading(dir, goodEntitlements(), "");
             fs::remove(dir.path() / kWatchInfoPlistFile);
             fs::create_symlink("/dev/zero", dir.path() / kWatchInfoPlistFile);
             return path;
         },
         Outcome::checkFails,
         std::string(kWatchInfoPlistFile),
         {"Not a regular file"},
         kInfoPlistChecks},
        {"InfoPlistUnclosedElements",
         watchInfoPlist(xmlUnclosed),
         Outcome::checkFails,
         std::string(kWatchInfoPlistFile),
         {":7:"},
         kInfoPlistChecks},
        {"InfoPlistBillionLaughs",
         watchInfoPlist(xmlBillionLaughs),
         Outcome::checkFails,
         std::string(kWatchInfoPlistFile),
         {"entity"},
         kInfoPlistChecks},
        {"InfoPlistExpansion",
         watchInfoPlist(binaryExpansion),
         Outcome::checkFails,
         std::string(kWatchInfoPlistFile),
         {"expands to more than"},
         kInfoPlistChecks},
        {"InfoPlistIsAFolder",
         [](const TempDir& dir) {
             const std::string path = writeProjectReading(dir, goodEntitlements(), "");
             fs::remove(dir.path() / kWatchInfoPlistFile);
             fs::create_directories(dir.path() / kWatchInfoPlistFile);
             return path;
         },
         Outcome::checkFails,
         std::string(kWatchInfoPlistFile),
         {"Is a directory"},
         kInfoPlistChecks},
        {"WorkspaceNotUtf8",
         workspace(workspaceData({"group:App\xFF\xFE.xcodeproj"})),
         Outcome::notLoaded,
         "",
         {"Failed to parse project: Failed to parse .xcworkspace"}},
        {"HugeWorkspace",
         [](const TempDir& dir) {
             sparse(dir, "App.xcworkspace/contents.xcworkspacedata", "<?xml");
             return dir.file("App.xcworkspace");
         },
         Outcome::notLoaded,
         "App.xcworkspace/contents.xcworkspacedata",
         {"File too large"}},
        {"WorkspaceClimbsOutToNothing",
         workspace(workspaceData({"group:../../../../../../../../../../nowhere/App.xcodeproj"})),
         Outcome::notLoaded,
         "",
         {"Failed to parse project: project.pbxproj not found"}},
        {"WorkspaceClimbsOutToAProject",
         [](const TempDir& dir) {
             writeProjectReading(dir, goodEntitlements(), goodWatchInfoPlist());
             return workspace(workspaceData({"group:../../App.xcodeproj"}))(dir);
         },
         Outcome::scans,
         "",
         {}},
    };
}

// Names the row in test listings instead of dumping its bytes.
void PrintTo(const BrokenInput& input, std::ostream* out) {
    *out << input.name;
}

class BrokenInputTest : public ::testing::TestWithParam<BrokenInput> {};

void expectSpecific(const std::string& message) {
    EXPECT_FALSE(message.empty());
    for (const char* vague : {"std::exception", "basic_string", "unknown error", "bad_alloc"}) {
        EXPECT_EQ(message.find(vague), std::string::npos) << message;
    }
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find('\n', start);
        result.push_back(text.substr(start, end - start));
        start = end == std::string::npos ? text.size() : end + 1;
    }
    return result;
}

TEST_P(BrokenInputTest, EndsQuicklyWithASpecificOutcome) {
    const BrokenInput& input = GetParam();
    if (input.needsPermissions && geteuid() == 0) {
        GTEST_SKIP() << "root reads files whatever their permissions";
    }
    const TempDir dir;
    const std::string path = input.build(dir);

    const ProcessOutcome run = runKelvane({"scan", "--format", "json", path});

    expectQuick(run);
    if (run.timedOut) {
        return;
    }
    std::printf("exit %d in %.0f ms (%.0f ms processor)\n%s", run.status,
                std::chrono::duration<double, std::milli>(run.elapsed).count(),
                std::chrono::duration<double, std::milli>(run.processorTime).count(),
                run.err.c_str());
    const std::string failingPath = input.failingFile.empty() ? "" : dir.file(input.failingFile);

    if (input.outcome == Outcome::notLoaded) {
        EXPECT_EQ(run.status, 2) << run.err;
        EXPECT_EQ(run.out, "");
        const std::vector<std::string> errLines = lines(run.err);
        ASSERT_EQ(errLines.size(), 1u) << run.err;
        const std::string& line = errLines.front();
        expectSpecific(line);
        if (failingPath.empty()) {
            EXPECT_EQ(line, "kelvane: " + input.reason.front());
        } else {
            EXPECT_EQ(line.rfind("kelvane: Failed to parse project: " + failingPath, 0), 0u)
                << line;
            for (const std::string& part : input.reason) {
                EXPECT_NE(line.find(part), std::string::npos) << line << "\nlacks: " << part;
            }
        }
        return;
    }

    EXPECT_TRUE(run.status == 0 || run.status == 1) << run.status << "\n" << run.err;
    const auto report = nlohmann::json::parse(run.out, nullptr, false);
    ASSERT_FALSE(report.is_discarded()) << run.out.substr(0, 500);
    ASSERT_EQ(report["checks"].size(), 9u);

    std::set<std::string> failed;
    for (const auto& row : report["checks"]) {
        if (row["error"].is_null()) {
            continue;
        }
        const std::string id = row["id"];
        const std::string error = row["error"];
        failed.insert(id);
        expectSpecific(error);
        EXPECT_EQ(error.rfind(failingPath + ":", 0), 0u) << error;
        for (const std::string& part : input.reason) {
            EXPECT_NE(error.find(part), std::string::npos) << error << "\nlacks: " << part;
        }
        EXPECT_NE(run.err.find("Check " + id + " failed: " + error + "\n"), std::string::npos)
            << run.err;
    }
    EXPECT_EQ(failed, input.failingChecks);
    EXPECT_EQ(lines(run.err).size(), input.failingChecks.size()) << run.err;
}

INSTANTIATE_TEST_SUITE_P(Hostile, BrokenInputTest, ::testing::ValuesIn(brokenInputs()),
                         [](const auto& row) { return row.param.name; });

} // namespace
} // namespace kelvane::testing
