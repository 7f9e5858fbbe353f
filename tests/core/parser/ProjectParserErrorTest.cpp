#include "ProjectFiles.h"
#include "TempDir.h"
#include "parser/ParserError.h"
#include "parser/ProjectParser.h"
#include "plist/ParseError.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#if defined(__unix__) || defined(__APPLE__)
#include <sys/stat.h>
#endif

namespace kelvane {
namespace {

using testing::pbxproj;
using testing::TempDir;
using testing::workspaceData;

const std::string kProject = pbxproj("\t\tT = {isa = PBXNativeTarget; name = App; };\n");

struct ErrorCase {
    const char* label;
    // Writes what the case needs and returns the location to parse.
    std::function<std::string(const TempDir&)> setup;
    ParserError::Case expected;
    const char* text;
};

class ParserErrors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(ParserErrors, NameTheCaseAndItsText) {
    const ErrorCase& c = GetParam();
    TempDir dir;
    const std::string location = c.setup(dir);
    try {
        (void)ProjectParser().parseProject(location);
        FAIL() << c.label << ": parsed without error";
    } catch (const ParserError& error) {
        EXPECT_EQ(error.errorCase(), c.expected) << c.label;
        EXPECT_STREQ(error.what(), c.text) << c.label;
    }
}

constexpr auto kInvalidPath = ParserError::Case::invalidProjectPath;
constexpr auto kNotFound = ParserError::Case::pbxprojNotFound;
constexpr auto kBadFormat = ParserError::Case::invalidPbxprojFormat;
constexpr auto kNoTargets = ParserError::Case::failedToParseTargets;
constexpr auto kBadWorkspace = ParserError::Case::workspaceParsingFailed;
constexpr auto kNoProject = ParserError::Case::noProjectInWorkspace;
constexpr auto kInvalidPathText = "Invalid .xcodeproj or .xcworkspace path";
constexpr auto kNotFoundText = "project.pbxproj not found";
constexpr auto kBadFormatText = "Could not parse project.pbxproj";
constexpr auto kNoTargetsText = "Failed to extract targets from project";
constexpr auto kBadWorkspaceText = "Failed to parse .xcworkspace";
constexpr auto kNoProjectText = "No .xcodeproj found in workspace";

std::string project(const TempDir& dir, const std::string& bundle, const std::string& bytes) {
    dir.write(bundle + "/project.pbxproj", bytes);
    return dir.file(bundle);
}

std::string workspace(const TempDir& dir, const std::string& bytes) {
    dir.write("W.xcworkspace/contents.xcworkspacedata", bytes);
    return dir.file("W.xcworkspace");
}

INSTANTIATE_TEST_SUITE_P(
    FromFiles, ParserErrors,
    ::testing::Values(
        ErrorCase{"extension in upper case",
                  [](const TempDir& d) { return project(d, "App.XCODEPROJ", kProject); },
                  kInvalidPath, kInvalidPathText},
        ErrorCase{"a plain folder", [](const TempDir& d) { return d.path().string(); },
                  kInvalidPath, kInvalidPathText},
        ErrorCase{"the project file itself",
                  [](const TempDir& d) {
                      return project(d, "App.xcodeproj", kProject) + "/project.pbxproj";
                  },
                  kInvalidPath, kInvalidPathText},
        ErrorCase{"extension with more after it",
                  [](const TempDir& d) { return project(d, "App.xcodeproj.bak", kProject); },
                  kInvalidPath, kInvalidPathText},
        ErrorCase{"empty location", [](const TempDir&) { return std::string(); }, kInvalidPath,
                  kInvalidPathText},

        ErrorCase{"bundle without a project file",
                  [](const TempDir& d) {
                      d.write("App.xcodeproj/xcshareddata/WorkspaceSettings.xcsettings", "");
                      return d.file("App.xcodeproj");
                  },
                  kNotFound, kNotFoundText},
        ErrorCase{"no bundle at all", [](const TempDir& d) { return d.file("None.xcodeproj"); },
                  kNotFound, kNotFoundText},
        ErrorCase{"workspace naming a project that is not there",
                  [](const TempDir& d) {
                      return workspace(d, workspaceData({"group:Gone/Gone.xcodeproj"}));
                  },
                  kNotFound, kNotFoundText},

        ErrorCase{"root is a list",
                  [](const TempDir& d) { return project(d, "App.xcodeproj", "( a, b )\n"); },
                  kBadFormat, kBadFormatText},
        ErrorCase{"root is text",
                  [](const TempDir& d) { return project(d, "App.xcodeproj", "\"text\"\n"); },
                  kBadFormat, kBadFormatText},
        ErrorCase{"root is an XML list",
                  [](const TempDir& d) {
                      return project(d, "App.xcodeproj",
                                     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                     "<plist version=\"1.0\"><array/></plist>\n");
                  },
                  kBadFormat, kBadFormatText},

        ErrorCase{"empty root dictionary",
                  [](const TempDir& d) { return project(d, "App.xcodeproj", "{ }\n"); }, kNoTargets,
                  kNoTargetsText},
        ErrorCase{"only a comment reads as an empty dictionary",
                  [](const TempDir& d) {
                      return project(d, "App.xcodeproj", "// !$*UTF8*$!\n/* nothing */\n");
                  },
                  kNoTargets, kNoTargetsText},
        ErrorCase{"no object table",
                  [](const TempDir& d) {
                      return project(d, "App.xcodeproj", "{ archiveVersion = 1; }\n");
                  },
                  kNoTargets, kNoTargetsText},
        ErrorCase{
            "object table is text",
            [](const TempDir& d) { return project(d, "App.xcodeproj", "{ objects = none; }\n"); },
            kNoTargets, kNoTargetsText},
        ErrorCase{"workspace without its data file",
                  [](const TempDir& d) {
                      d.write("W.xcworkspace/xcshareddata/IDEWorkspaceChecks.plist", "");
                      return d.file("W.xcworkspace");
                  },
                  kBadWorkspace, kBadWorkspaceText},
        ErrorCase{"workspace bytes not UTF-8",
                  [](const TempDir& d) {
                      project(d, "App.xcodeproj", kProject);
                      return workspace(d,
                                       workspaceData({"group:App.xcodeproj"}) + "<!-- \xff -->\n");
                  },
                  kBadWorkspace, kBadWorkspaceText},
        ErrorCase{"workspace referring only to itself",
                  [](const TempDir& d) { return workspace(d, workspaceData({"self:"})); },
                  kNoProject, kNoProjectText},
        ErrorCase{"workspace without file references",
                  [](const TempDir& d) { return workspace(d, workspaceData({})); }, kNoProject,
                  kNoProjectText},
        ErrorCase{"empty workspace file", [](const TempDir& d) { return workspace(d, ""); },
                  kNoProject, kNoProjectText},
        ErrorCase{"workspace that is a property-list dictionary, even naming a real project",
                  [](const TempDir& d) {
                      project(d, "App.xcodeproj", kProject);
                      return workspace(d, "{ location = \"group:App.xcodeproj\"; }\n");
                  },
                  kNoProject, kNoProjectText},
        ErrorCase{"workspace that is an XML property-list dictionary",
                  [](const TempDir& d) {
                      project(d, "App.xcodeproj", kProject);
                      return workspace(d, "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict>"
                                          "<key>location</key><string>location = "
                                          "\"group:App.xcodeproj\"</string></dict></plist>\n");
                  },
                  kNoProject, kNoProjectText}));

// Errors of reading and of the property-list reader reach the caller as they
// are, with their own text.
TEST(ParserPassThrough, ProjectFileThatIsAFolderFailsWithTheReadError) {
    TempDir dir;
    dir.write("App.xcodeproj/project.pbxproj/inner", "");
    const std::string file = dir.file("App.xcodeproj") + "/project.pbxproj";
    try {
        (void)ProjectParser().parseProject(dir.file("App.xcodeproj"));
        FAIL() << "a folder named project.pbxproj parsed";
    } catch (const plist::FileReadError& error) {
        EXPECT_EQ(std::string(error.what()).rfind(file + ": ", 0), 0u) << error.what();
    }
}

#if defined(__unix__) || defined(__APPLE__)
TEST(ParserPassThrough, ProjectFileThatIsAFifoFailsInsteadOfBlocking) {
    TempDir dir;
    std::filesystem::create_directories(dir.path() / "App.xcodeproj");
    const std::string fifo = dir.file("App.xcodeproj") + "/project.pbxproj";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_THROW((void)ProjectParser().parseProject(dir.file("App.xcodeproj")),
                 plist::FileReadError);
}
#endif

TEST(ParserPassThrough, MalformedProjectFileFailsWithTheReaderErrorAndPosition) {
    TempDir dir;
    const std::string bundle = project(dir, "App.xcodeproj", "{\n\tobjects = {\n\t\tA = ;\n}\n");
    try {
        (void)ProjectParser().parseProject(bundle);
        FAIL() << "a malformed project file parsed";
    } catch (const plist::ParseError& error) {
        EXPECT_EQ(std::string(error.what()).rfind(bundle + "/project.pbxproj:3:", 0), 0u)
            << error.what();
    }
}

} // namespace
} // namespace kelvane
