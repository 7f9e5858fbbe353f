#include "KelvaneProcess.h"
#include "ProjectFiles.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <filesystem>
#include <string>

namespace kelvane::testing {
namespace {

namespace fs = std::filesystem;

constexpr int kFolders = 200;
constexpr int kFilesPerFolder = 1000;

// A checkout the size of a large app's, where links lead back up the tree and
// round in circles: `files` holds 200,000 files and the links, `project` the
// one project. Built once per run of this binary, as it takes seconds.
const TempDir& largeTree() {
    static const TempDir tree;
    static const bool built = [] {
        const fs::path files = tree.path() / "files";
        // In each folder, links to its first file: a name is all the walk
        // sees of a file, and a link costs a fraction of a new file to make
        // and to remove (file systems cap the links to one file, hence one
        // per folder).
        for (int folder = 0; folder < kFolders; ++folder) {
            const std::string name = std::to_string(1000 + folder);
            const std::string first = tree.write("files/d" + name + "/10000.swift", "");
            for (int file = 1; file < kFilesPerFolder; ++file) {
                fs::create_hard_link(first, files / ("d" + name) /
                                                (std::to_string(10000 + file) + ".swift"));
            }
        }
        fs::create_directory_symlink(".", files / "self");
        fs::create_directory_symlink("..", files / "d1000" / "up");
        fs::create_directory_symlink("../../files", files / "d1199" / "again");
        fs::create_symlink("ping", files / "pong");
        fs::create_symlink("pong", files / "ping");
        tree.write("project/App.xcodeproj/project.pbxproj", pbxproj(""));
        return true;
    }();
    (void)built;
    return tree;
}

TEST(LargeFolder, WalkEndsQuicklyDespiteLinkLoops) {
    const TempDir& tree = largeTree();
    // A project bundle that is a link to itself: found by name, but nothing
    // can be read through it.
    const TempDir looped;
    fs::create_symlink("Loop.xcodeproj", looped.path() / "Loop.xcodeproj");
    const struct {
        std::string chosen;
        int status;
        // The message on standard error, or the project scanned.
        std::string expected;
    } cases[] = {
        {tree.file("files"), 2,
         "kelvane: No .xcodeproj or .xcworkspace found in the selected folder.\n"},
        {tree.path().string(), 0, tree.file("project/App.xcodeproj")},
        {looped.path().string(), 2,
         "kelvane: Failed to parse project: project.pbxproj not found\n"},
        {looped.file("Loop.xcodeproj"), 2, "kelvane: The selected path does not exist.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.chosen);
        const ProcessOutcome run = runKelvane({"scan", "--format", "json", c.chosen});
        expectQuick(run);
        std::printf("%s: %.0f ms processor, %.0f ms elapsed\n", c.chosen.c_str(),
                    std::chrono::duration<double, std::milli>(run.processorTime).count(),
                    std::chrono::duration<double, std::milli>(run.elapsed).count());
        EXPECT_EQ(run.status, c.status) << run.err;
        if (c.status == 2) {
            EXPECT_EQ(run.err, c.expected);
            EXPECT_EQ(run.out, "");
            continue;
        }
        const auto report = nlohmann::json::parse(run.out, nullptr, false);
        ASSERT_FALSE(report.is_discarded()) << run.out;
        EXPECT_EQ(report["project"]["path"], c.expected);
        EXPECT_EQ(run.err, "");
    }
}

} // namespace
} // namespace kelvane::testing
