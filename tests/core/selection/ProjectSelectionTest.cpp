#include "selection/ProjectSelection.h"
#include "TempDir.h"
#include "selection/ProjectSelectionError.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using Case = ProjectSelectionError::Case;

// Entries ending in "/" are folders, the others empty files.
void build(const testing::TempDir& dir, const std::vector<std::string>& entries) {
    for (const std::string& entry : entries) {
        if (entry.back() == '/') {
            fs::create_directories(dir.path() / entry);
        } else {
            dir.write(entry, "");
        }
    }
}

// The outcome of a selection as one comparable text: the path found, relative
// to the test folder, or the error's case and description.
template <typename Select> std::string outcome(const testing::TempDir& dir, Select select) {
    const std::string root = dir.path().string();
    try {
        const std::string found = select();
        return found.rfind(root, 0) == 0 ? found.substr(root.size()) : found;
    } catch (const ProjectSelectionError& error) {
        return "error " + std::to_string(static_cast<int>(error.errorCase())) + ": " + error.what();
    }
}

std::string failure(Case errorCase, const std::string& names = {}) {
    const ProjectSelectionError error(errorCase, names);
    return "error " + std::to_string(static_cast<int>(errorCase)) + ": " + error.what();
}

TEST(FindProject, ChoosesTheSingleCandidateOfAWalkInByteOrder) {
    const struct {
        const char* name;
        std::vector<std::string> entries;
        std::string expected;
    } rows[] = {
        {"workspace wins over project", {"A.xcworkspace/", "B.xcodeproj/"}, "/A.xcworkspace"},
        {"the project's own workspace wins over the project",
         {"App.xcodeproj/project.pbxproj",
          "App.xcodeproj/project.xcworkspace/contents.xcworkspacedata"},
         "/App.xcodeproj/project.xcworkspace"},
        {"single project deep down",
         {"src/ios/App/App.xcodeproj/project.pbxproj", "README.md"},
         "/src/ios/App/App.xcodeproj"},
        {"candidates are known by name, files included", {"Notes.xcodeproj"}, "/Notes.xcodeproj"},
        {"two workspaces, in byte order (upper case first)",
         {"b/a.xcworkspace/", "a/B.xcworkspace/", "C.xcodeproj/"},
         failure(Case::multipleWorkspacesFound, "B.xcworkspace, a.xcworkspace")},
        {"two projects, each with its own workspace",
         {"One/One.xcodeproj/project.xcworkspace/", "Two/Two.xcodeproj/project.xcworkspace/"},
         failure(Case::multipleWorkspacesFound, "project.xcworkspace, project.xcworkspace")},
        {"depth first: a folder's contents before its later siblings",
         {"a/deep/Deep.xcodeproj/", "b.xcodeproj/"},
         failure(Case::multipleProjectsFound, "Deep.xcodeproj, b.xcodeproj")},
        {"siblings ordered by name, not by whole path ('.' sorts before '/')",
         {"a/X.xcodeproj/", "a.xcodeproj/"},
         failure(Case::multipleProjectsFound, "X.xcodeproj, a.xcodeproj")},
        {"pre-order: a bundle before what it holds",
         {"A.xcodeproj/Inner.xcodeproj/", "B.xcodeproj/"},
         failure(Case::multipleProjectsFound, "A.xcodeproj, Inner.xcodeproj, B.xcodeproj")},
        {"candidates only inside hidden entries",
         {".hidden/A.xcodeproj/", ".B.xcworkspace/", "src/.git/C.xcworkspace/", "src/main.swift"},
         failure(Case::noProjectsFound)},
        {"extensions are case-sensitive and whole",
         {"A.XCODEPROJ/", "B.XcWorkspace/", "C.xcodeproj.bak/", "D.xcworkspace~", "xcodeproj/"},
         failure(Case::noProjectsFound)},
        {"no candidates at any depth",
         {"src/a/b/c/main.swift", "empty/"},
         failure(Case::noProjectsFound)},
    };
    for (const auto& row : rows) {
        testing::TempDir dir;
        build(dir, row.entries);
        EXPECT_EQ(outcome(dir, [&] { return findProject(dir.path().string()); }), row.expected)
            << row.name;
    }
}

TEST(FindProject, DoesNotFollowSymbolicLinks) {
    testing::TempDir dir;
    testing::TempDir elsewhere;
    build(dir, {"a/App.xcodeproj/project.pbxproj", "a/b/"});
    build(elsewhere, {"Other.xcodeproj/"});
    // A link back to an ancestor would make a following walk go round forever.
    fs::create_directory_symlink(dir.path(), dir.path() / "a" / "loop");
    fs::create_directory_symlink(dir.path() / "a", dir.path() / "a" / "b" / "up");
    fs::create_directory_symlink(elsewhere.path(), dir.path() / "linked");

    EXPECT_EQ(outcome(dir, [&] { return findProject(dir.path().string()); }), "/a/App.xcodeproj");
}

TEST(FindProject, CannotReadTheChosenFolder) {
    testing::TempDir dir;
    const std::string plainFile = dir.write("main.swift", "");
    for (const std::string& folder : {dir.file("gone"), plainFile, std::string()}) {
        EXPECT_EQ(outcome(dir, [&] { return findProject(folder); }),
                  failure(Case::cannotEnumerateFolder))
            << folder;
    }
}

// Only meaningful where permissions keep the user out, i.e. not as root.
TEST(FindProject, UnreadableFolders) {
    testing::TempDir dir;
    build(dir, {"locked/Hidden.xcodeproj/", "Visible.xcodeproj/"});
    const fs::path locked = dir.path() / "locked";
    fs::permissions(locked, fs::perms::none);
    std::error_code error;
    const fs::directory_iterator probe(locked, error);
    if (!error) {
        fs::permissions(locked, fs::perms::owner_all);
        GTEST_SKIP() << "permissions do not keep this user out";
    }
    const std::string below = outcome(dir, [&] { return findProject(dir.path().string()); });
    const std::string chosen = outcome(dir, [&] { return findProject(locked.string()); });
    fs::permissions(locked, fs::perms::owner_all);

    EXPECT_EQ(below, "/Visible.xcodeproj") << "passed over silently below the chosen folder";
    EXPECT_EQ(chosen, failure(Case::cannotEnumerateFolder));
}

TEST(ResolveSelection, TurnsAChoiceIntoOneLocation) {
    const struct {
        const char* name;
        std::vector<std::string> entries;
        std::string chosen;
        std::string expected;
    } rows[] = {
        {"deleted path", {"App.xcodeproj/"}, "/Gone.xcodeproj", failure(Case::pathDoesNotExist)},
        {"plain file", {"main.swift"}, "/main.swift", failure(Case::invalidSelection)},
        {"project chosen directly, not looked into",
         {"App.xcodeproj/project.xcworkspace/", "App.xcodeproj/Other.xcodeproj/"},
         "/App.xcodeproj",
         "/App.xcodeproj"},
        {"a bundle is accepted by its name alone",
         {"Empty.xcodeproj"},
         "/Empty.xcodeproj",
         "/Empty.xcodeproj"},
        {"trailing slash dropped from a bundle",
         {"App.xcodeproj/"},
         "/App.xcodeproj/",
         "/App.xcodeproj"},
        {"folder with a trailing slash", {"ios/App.xcodeproj/"}, "//", "/ios/App.xcodeproj"},
        {"folder",
         {"ios/App.xcodeproj/", "ios/Pods/Pods.xcodeproj/", "App.xcworkspace/"},
         "",
         "/App.xcworkspace"},
        {"folder with upper-case extension is just a folder",
         {"App.XCODEPROJ/project.pbxproj"},
         "/App.XCODEPROJ",
         failure(Case::noProjectsFound)},
        {"file with upper-case extension",
         {"App.XCWORKSPACE"},
         "/App.XCWORKSPACE",
         failure(Case::invalidSelection)},
    };
    for (const auto& row : rows) {
        testing::TempDir dir;
        build(dir, row.entries);
        const std::string chosen = dir.path().string() + row.chosen;
        EXPECT_EQ(outcome(dir, [&] { return resolveSelection(chosen); }), row.expected) << row.name;
    }
}

TEST(ResolveSelection, FollowsTheLinkTheUserChose) {
    testing::TempDir dir;
    build(dir, {"real/App.xcodeproj/"});
    fs::create_directory_symlink(dir.path() / "real", dir.path() / "link");
    fs::create_symlink(dir.path() / "missing", dir.path() / "dangling.xcodeproj");

    EXPECT_EQ(outcome(dir, [&] { return resolveSelection(dir.file("link")); }),
              "/link/App.xcodeproj")
        << "paths stay as chosen; the link is not resolved";
    EXPECT_EQ(outcome(dir, [&] { return resolveSelection(dir.file("dangling.xcodeproj")); }),
              failure(Case::pathDoesNotExist));
}

} // namespace
} // namespace kelvane
