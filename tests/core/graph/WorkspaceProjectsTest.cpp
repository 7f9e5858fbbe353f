#include "parser/ParserError.h"
#include "parser/WorkspaceProjects.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelvane {
namespace {

struct Case {
    const char* name;
    std::string xml;
    std::vector<std::string> projects;
};

TEST(WorkspaceProjects, EveryProjectIsLocatedThroughItsGroups) {
    const std::vector<Case> cases{
        {"container and group at the top",
         R"(<Workspace version="1.0"><FileRef location="group:Pods/Pods.xcodeproj"/>
            <FileRef location="container:App.xcodeproj"/></Workspace>)",
         {"ws/Pods/Pods.xcodeproj", "ws/App.xcodeproj"}},
        {"groups nest and add their locations",
         R"(<Workspace><Group location="group:Apps" name="Apps"><Group location="group:iOS">
            <FileRef location="group:App.xcodeproj"/></Group></Group>
            <Group name="Only a name"><FileRef location="group:Lib/Lib.xcodeproj"/></Group></Workspace>)",
         {"ws/Apps/iOS/App.xcodeproj", "ws/Lib/Lib.xcodeproj"}},
        {"self, packages and other files name no project",
         R"(<Workspace><FileRef location="self:"/><FileRef location="group:Package"/>
            <FileRef location="group:README.md"/></Workspace>)",
         {}},
        {"absolute stays absolute",
         R"(<Workspace><FileRef location="absolute:/src/App.xcodeproj/"/></Workspace>)",
         {"/src/App.xcodeproj"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(workspaceProjectsIn(c.xml, "ws"), c.projects) << c.name;
    }
}

TEST(WorkspaceProjects, HostileDataIsRefusedOrBounded) {
    EXPECT_THROW((void)workspaceProjectsIn("<Workspace><FileRef", "ws"), ParserError);
    EXPECT_THROW((void)workspaceProjectsIn(
                     R"(<!DOCTYPE w [<!ENTITY a "aaaa">]><Workspace>&a;</Workspace>)", "ws"),
                 ParserError);
    // Groups past the depth bound are ignored, not followed.
    std::string deep = "<Workspace>";
    for (int i = 0; i < 100; ++i) {
        deep += "<Group location=\"group:d\">";
    }
    deep += "<FileRef location=\"group:X.xcodeproj\"/>";
    for (int i = 0; i < 100; ++i) {
        deep += "</Group>";
    }
    deep += "</Workspace>";
    EXPECT_TRUE(workspaceProjectsIn(deep, "ws").empty());
}

} // namespace
} // namespace kelvane
