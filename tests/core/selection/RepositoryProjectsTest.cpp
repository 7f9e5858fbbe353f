#include "selection/RepositoryProjects.h"
#include "TempDir.h"
#include "selection/AmbiguousFolderError.h"
#include "selection/ProjectSelectionError.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;

std::string workspaceListing(std::initializer_list<std::string_view> locations) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Workspace version = \"1.0\">\n";
    for (const std::string_view location : locations) {
        xml += "   <FileRef location = \"" + std::string(location) + "\"></FileRef>\n";
    }
    return xml + "</Workspace>\n";
}

void project(const TempDir& dir, const std::string& bundle) {
    dir.write(bundle + "/project.pbxproj", "// !$*UTF8*$!\n{}\n");
}

void workspace(const TempDir& dir, const std::string& bundle,
               std::initializer_list<std::string_view> locations) {
    dir.write(bundle + "/contents.xcworkspacedata", workspaceListing(locations));
}

std::vector<std::string> relativePaths(const std::vector<FolderProject>& projects) {
    std::vector<std::string> paths;
    for (const FolderProject& found : projects) {
        paths.push_back(found.relative);
    }
    return paths;
}

// Each tree is a checkout as real repositories lay them out; the answer is the
// top-level projects, relative to the tree, in walk order.
TEST(RepositoryProjects, FindsWhatADeveloperMeansInEachLayout) {
    const struct {
        const char* name;
        void (*build)(const TempDir&);
        std::vector<std::string> expected;
    } cases[] = {
        {"a project's own workspace and bundles inside bundles are not candidates",
         [](const TempDir& dir) {
             project(dir, "App.xcodeproj");
             workspace(dir, "App.xcodeproj/project.xcworkspace", {"self:"});
             project(dir, "App.xcodeproj/Nested.xcodeproj");
             project(dir, "Tools/Helper.app/Contents/Inner.xcodeproj");
             project(dir, "Docs/Tour.playground/Other.xcodeproj");
         },
         {"App.xcodeproj"}},
        {"dependency, build and hidden folders are skipped",
         [](const TempDir& dir) {
             project(dir, "ios/App.xcodeproj");
             project(dir, "Pods/Pods.xcodeproj");
             project(dir, "Carthage/Checkouts/Lib/Lib.xcodeproj");
             project(dir, "DerivedData/App/SourcePackages/checkouts/P/P.xcodeproj");
             project(dir, "node_modules/react-native/React/React.xcodeproj");
             project(dir, "build/Generated.xcodeproj");
             project(dir, ".build/checkouts/Dep/Dep.xcodeproj");
             workspace(dir, ".swiftpm/xcode/package.xcworkspace", {"self:"});
         },
         {"ios/App.xcodeproj"}},
        {"two apps are two candidates, in byte order",
         [](const TempDir& dir) {
             project(dir, "b/Second.xcodeproj");
             project(dir, "a/First.xcodeproj");
             project(dir, "a-z/Third.xcodeproj");
         },
         {"a/First.xcodeproj", "a-z/Third.xcodeproj", "b/Second.xcodeproj"}},
        {"a CocoaPods workspace stands for its app and Pods projects",
         [](const TempDir& dir) {
             workspace(dir, "App.xcworkspace", {"group:App.xcodeproj", "group:Pods/Pods.xcodeproj"});
             project(dir, "App.xcodeproj");
             project(dir, "Pods/Pods.xcodeproj");
         },
         {"App.xcworkspace"}},
        {"a workspace wins over listed projects elsewhere in the tree, however written",
         [](const TempDir& dir) {
             workspace(dir, "ios/App.xcworkspace",
                       {"group:App/App.xcodeproj", "group:../Modules/Core/Core.xcodeproj",
                        "container:./../Modules/Net/Net.xcodeproj/"});
             project(dir, "ios/App/App.xcodeproj");
             project(dir, "Modules/Core/Core.xcodeproj");
             project(dir, "Modules/Net/Net.xcodeproj");
         },
         {"ios/App.xcworkspace"}},
        {"a workspace that names groups resolves through them",
         [](const TempDir& dir) {
             dir.write("App.xcworkspace/contents.xcworkspacedata",
                       "<Workspace version = \"1.0\"><Group location = \"group:Libs\">"
                       "<FileRef location = \"group:Kit/Kit.xcodeproj\"/></Group></Workspace>");
             project(dir, "Libs/Kit/Kit.xcodeproj");
         },
         {"App.xcworkspace"}},
        {"a project no workspace lists remains a candidate",
         [](const TempDir& dir) {
             workspace(dir, "App.xcworkspace", {"group:App.xcodeproj"});
             project(dir, "App.xcodeproj");
             project(dir, "tools/Diff/Diff.xcodeproj");
         },
         {"App.xcworkspace", "tools/Diff/Diff.xcodeproj"}},
        {"a package workspace that lists no project stands aside",
         [](const TempDir& dir) {
             workspace(dir, "Packages.xcworkspace", {"group:Packages/Kit"});
             project(dir, "App.xcodeproj");
         },
         {"App.xcodeproj"}},
        {"alone, a workspace that lists no project is still what the folder holds",
         [](const TempDir& dir) { workspace(dir, "Packages.xcworkspace", {"group:Kit"}); },
         {"Packages.xcworkspace"}},
        {"a workspace whose listing cannot be read stays, for its scan to explain",
         [](const TempDir& dir) {
             dir.write("Broken.xcworkspace/contents.xcworkspacedata", "<Workspace");
             dir.write("Gone.xcworkspace/README", "");
             project(dir, "App.xcodeproj");
         },
         {"App.xcodeproj", "Broken.xcworkspace", "Gone.xcworkspace"}},
        {"16 folders deep is found, 17 is not",
         [](const TempDir& dir) {
             std::string deep;
             for (int level = 0; level < 16; ++level) {
                 deep += "d/";
             }
             project(dir, deep + "Found.xcodeproj");
             project(dir, deep + "d/Lost.xcodeproj");
         },
         {"d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/Found.xcodeproj"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TempDir dir;
        c.build(dir);
        EXPECT_EQ(relativePaths(repositoryProjects(dir.path().string())), c.expected);
    }
}

TEST(RepositoryProjects, PathsAreJoinedOntoTheFolderAsGiven) {
    const TempDir dir;
    project(dir, "ios/App.xcodeproj");
    const std::string folder = dir.path().string();
    const std::vector<FolderProject> expected{{folder + "/ios/App.xcodeproj", "ios/App.xcodeproj"}};
    EXPECT_EQ(repositoryProjects(folder + "/"), expected);

    const fs::path previous = fs::current_path();
    fs::current_path(dir.path());
    const std::vector<FolderProject> here = repositoryProjects(".");
    const std::vector<FolderProject> inside = repositoryProjects("ios/");
    fs::current_path(previous);
    EXPECT_EQ(here, (std::vector<FolderProject>{{"ios/App.xcodeproj", "ios/App.xcodeproj"}}));
    EXPECT_EQ(inside, (std::vector<FolderProject>{{"ios/App.xcodeproj", "App.xcodeproj"}}));
}

TEST(RepositoryProjects, LinksAreNeverWalkedButABundleLinkIsACandidateByName) {
    const TempDir dir;
    project(dir, "real/App.xcodeproj");
    fs::create_directory_symlink("..", dir.path() / "real" / "up");
    fs::create_directory_symlink("real", dir.path() / "again");
    fs::create_symlink("Loop.xcodeproj", dir.path() / "Loop.xcodeproj");
    EXPECT_EQ(relativePaths(repositoryProjects(dir.path().string())),
              (std::vector<std::string>{"Loop.xcodeproj", "real/App.xcodeproj"}));
}

TEST(RepositoryProjects, AFifoWhereAWorkspaceListingBelongsDoesNotBlock) {
    const TempDir dir;
    fs::create_directories(dir.path() / "App.xcworkspace");
    ASSERT_EQ(mkfifo((dir.path() / "App.xcworkspace/contents.xcworkspacedata").c_str(), 0600), 0);
    project(dir, "App.xcodeproj");
    EXPECT_EQ(relativePaths(repositoryProjects(dir.path().string())),
              (std::vector<std::string>{"App.xcodeproj", "App.xcworkspace"}));
}

TEST(RepositoryProjects, RefusalsKeepTheWindowsTexts) {
    const TempDir dir;
    dir.write("file.swift", "");
    dir.write("empty/Sources/main.swift", "");
    project(dir, "onlyPods/Pods/Pods.xcodeproj");
    const std::pair<std::string, std::string> cases[] = {
        {dir.file("gone"), "The selected path does not exist."},
        {dir.file("file.swift"),
         "Please select an .xcodeproj, .xcworkspace, or a folder containing a project."},
        {dir.file("empty"), "No .xcodeproj or .xcworkspace found in the selected folder."},
        {dir.file("onlyPods"), "No .xcodeproj or .xcworkspace found in the selected folder."},
    };
    for (const auto& [path, message] : cases) {
        try {
            (void)repositoryProjects(path);
            ADD_FAILURE() << path;
        } catch (const ProjectSelectionError& error) {
            EXPECT_EQ(std::string(error.what()), message) << path;
        }
    }
}

TEST(ResolveRepositoryProject, ABundleIsTakenAsGivenAndAFolderNeedsOneCandidate) {
    const TempDir dir;
    project(dir, "App.xcodeproj");
    workspace(dir, "App.xcodeproj/project.xcworkspace", {"self:"});
    project(dir, "two/b/B.xcodeproj");
    project(dir, "two/a/A.xcodeproj");

    EXPECT_EQ(resolveRepositoryProject(dir.file("App.xcodeproj") + "/"), dir.file("App.xcodeproj"));
    EXPECT_EQ(resolveRepositoryProject(dir.file("App.xcodeproj/project.xcworkspace")),
              dir.file("App.xcodeproj/project.xcworkspace"));
    try {
        (void)resolveRepositoryProject(dir.file("two/"));
        ADD_FAILURE() << "two candidates resolved to one";
    } catch (const AmbiguousFolderError& error) {
        EXPECT_EQ(error.candidates(), (std::vector<std::string>{"a/A.xcodeproj", "b/B.xcodeproj"}));
        EXPECT_EQ(std::string(error.what()),
                  "2 projects in " + dir.file("two") + ":\n  a/A.xcodeproj\n  b/B.xcodeproj");
    }
    // A folder the repository's configuration excludes holds no candidate,
    // however it is written; "." and paths outside the folder exclude nothing.
    EXPECT_EQ(resolveRepositoryProject(dir.file("two"), {"./b/", "..", "."}),
              dir.file("two/a/A.xcodeproj"));
    EXPECT_EQ(resolveRepositoryProject(dir.file("two"), {"a/A.xcodeproj"}),
              dir.file("two/b/B.xcodeproj"));
    EXPECT_EQ(relativePaths(repositoryProjects(dir.path().string(), {"two/a", "tw"})),
              (std::vector<std::string>{"App.xcodeproj", "two/b/B.xcodeproj"}));
}

} // namespace
} // namespace kelvane
