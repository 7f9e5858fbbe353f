#include "ProjectFiles.h"
#include "TempDir.h"
#include "parser/ProjectParser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelvane {
namespace {

using testing::pbxproj;
using testing::TempDir;
using testing::workspaceData;

// A project whose single target is named after the bundle, so a test sees
// which project was loaded.
void writeProject(const TempDir& dir, const std::string& bundle) {
    dir.write(bundle + "/project.pbxproj",
              pbxproj("\t\tT = {isa = PBXNativeTarget; name = \"" + bundle + "\"; };\n"));
}

struct WorkspaceCase {
    const char* label;
    std::string workspace; // relative to the test folder
    std::string data;
    std::vector<std::string> projects; // bundles to create
    std::string expected;              // projectURL, relative to the test folder
};

class WorkspaceResolution : public ::testing::TestWithParam<WorkspaceCase> {};

TEST_P(WorkspaceResolution, LoadsTheFirstNamedProjectBesideTheWorkspace) {
    const WorkspaceCase& c = GetParam();
    TempDir dir;
    dir.write(c.workspace + "/contents.xcworkspacedata", c.data);
    for (const std::string& bundle : c.projects) {
        writeProject(dir, bundle);
    }
    const std::string root = dir.path().string();
    const ProjectContext project = ProjectParser().parseProject(root + "/" + c.workspace);
    EXPECT_EQ(project.projectURL, root + "/" + c.expected) << c.label;
    ASSERT_EQ(project.targets.size(), 1u) << c.label;
}

INSTANTIATE_TEST_SUITE_P(
    Workspaces, WorkspaceResolution,
    ::testing::Values(
        WorkspaceCase{"group location under the workspace's folder",
                      "W.xcworkspace",
                      workspaceData({"group:App/App.xcodeproj"}),
                      {"App/App.xcodeproj"},
                      "App/App.xcodeproj"},
        WorkspaceCase{"only the first of two projects",
                      "W.xcworkspace",
                      workspaceData({"group:First.xcodeproj", "group:Second.xcodeproj"}),
                      {"First.xcodeproj", "Second.xcodeproj"},
                      "First.xcodeproj"},
        WorkspaceCase{
            "self reference and pods workspace before the project",
            "W.xcworkspace",
            workspaceData({"self:", "group:Pods/Pods.xcworkspace", "container:App.xcodeproj"}),
            {"App.xcodeproj"},
            "App.xcodeproj"},
        WorkspaceCase{"absolute location appended under the folder",
                      "W.xcworkspace",
                      workspaceData({"absolute:/abs/X.xcodeproj"}),
                      {"abs/X.xcodeproj"},
                      "abs/X.xcodeproj"},
        WorkspaceCase{"parent references stay as written",
                      "sub/W.xcworkspace",
                      workspaceData({"group:../App.xcodeproj"}),
                      {"App.xcodeproj"},
                      "sub/../App.xcodeproj"},
        WorkspaceCase{
            "line break inside the kind prefix",
            "W.xcworkspace",
            "<Workspace>\n<FileRef location =\n \"group\n:App.xcodeproj\">\n</Workspace>\n",
            {"App.xcodeproj"},
            "App.xcodeproj"},
        WorkspaceCase{"enclosing groups are not combined",
                      "W.xcworkspace",
                      "<Workspace>\n<Group location = \"container:Sub\">\n"
                      "<FileRef location = \"group:App.xcodeproj\">\n</Group>\n</Workspace>\n",
                      {"App.xcodeproj"},
                      "App.xcodeproj"}));

TEST(ProjectLocation, TrailingSlashIsDroppedBeforeAnythingIsJoined) {
    TempDir dir;
    writeProject(dir, "App.xcodeproj");
    dir.write("W.xcworkspace/contents.xcworkspacedata", workspaceData({"group:App.xcodeproj"}));
    const std::string root = dir.path().string();

    EXPECT_EQ(ProjectParser().parseProject(root + "/App.xcodeproj/").projectURL,
              root + "/App.xcodeproj");
    EXPECT_EQ(ProjectParser().parseProject(root + "/App.xcodeproj//").projectURL,
              root + "/App.xcodeproj");
    EXPECT_EQ(ProjectParser().parseProject(root + "/W.xcworkspace/").projectURL,
              root + "/App.xcodeproj");
}

TEST(ProjectLocation, OneParserLoadsSeveralProjectsIndependently) {
    TempDir dir;
    writeProject(dir, "A.xcodeproj");
    writeProject(dir, "B.xcodeproj");
    const ProjectParser parser;
    EXPECT_EQ(parser.parseProject(dir.file("A.xcodeproj")).targets.at(0).name, "A.xcodeproj");
    EXPECT_EQ(parser.parseProject(dir.file("B.xcodeproj")).targets.at(0).name, "B.xcodeproj");
}

} // namespace
} // namespace kelvane
