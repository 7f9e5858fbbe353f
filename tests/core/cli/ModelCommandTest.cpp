#include "cli/ModelCommand.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace kelvane::cli {
namespace {

std::string readText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Paths in the output are the ones given, so the tests run from the
// repository's root and give repository-relative paths.
class ModelCommand : public ::testing::Test {
protected:
    void SetUp() override { std::filesystem::current_path(testing::sourceDir()); }
    void TearDown() override { std::filesystem::current_path(previous_); }

    struct Run {
        int status;
        std::string out;
        std::string err;
    };
    static Run inspect(const std::string& path, InspectFormat format) {
        std::ostringstream out;
        std::ostringstream err;
        const int status = runInspect(path, format, out, err);
        return {status, out.str(), err.str()};
    }

private:
    std::filesystem::path previous_ = std::filesystem::current_path();
};

TEST_F(ModelCommand, PrintsTheModelAsTheGoldenFilesShowFromAnyKindOfLocation) {
    const std::string golden = "tests/fixtures/model/Orbit.model";
    for (const std::string location :
         {"tests/fixtures/model/Orbit/Orbit.xcworkspace", "tests/fixtures/model/Orbit/"}) {
        const Run json = inspect(location, InspectFormat::json);
        EXPECT_EQ(json.status, 0) << location;
        EXPECT_EQ(json.out, readText(golden + ".json")) << location;
        EXPECT_EQ(json.err, "") << location;

        const Run text = inspect(location, InspectFormat::text);
        EXPECT_EQ(text.status, 0) << location;
        EXPECT_EQ(text.out, readText(golden + ".txt")) << location;
    }
}

TEST_F(ModelCommand, ProjectWithoutTargetsPrintsAnEmptyList) {
    testing::TempDir dir;
    const std::string bundle = dir.file("Empty.xcodeproj");
    dir.write("Empty.xcodeproj/project.pbxproj", "{ objects = { }; }");
    const Run json = inspect(bundle, InspectFormat::json);
    EXPECT_EQ(json.status, 0);
    EXPECT_EQ(json.out, "{\n  \"projectURL\": \"" + bundle + "\",\n  \"targets\": []\n}\n");
    EXPECT_EQ(inspect(bundle, InspectFormat::text).out, "Project  " + bundle + "\nTargets  0\n");
}

TEST_F(ModelCommand, FailuresWriteOnlyTheReasonAndExitWithTwo) {
    struct Case {
        std::string location;
        std::string err;
    };
    testing::TempDir dir;
    dir.write("Broken.xcodeproj/project.pbxproj", "{ objects = ");
    const std::string brokenFile = dir.file("Broken.xcodeproj") + "/project.pbxproj";
    const Case cases[] = {
        {"tests/fixtures/model/Missing.xcodeproj",
         "kelvane: The selected path does not exist.\n"},
        {"tests/fixtures/model/Orbit/Orbit/Info.plist",
         "kelvane: Please select an .xcodeproj, .xcworkspace, or a folder containing a "
         "project.\n"},
        {dir.path().string() + "/Broken.xcodeproj", "kelvane: " + brokenFile + ":1:13: "},
    };
    for (const Case& c : cases) {
        for (const InspectFormat format : {InspectFormat::text, InspectFormat::json}) {
            const Run run = inspect(c.location, format);
            EXPECT_EQ(run.status, 2) << c.location;
            EXPECT_EQ(run.out, "") << c.location;
            EXPECT_EQ(run.err.substr(0, c.err.size()), c.err) << c.location;
            EXPECT_EQ(run.err.back(), '\n');
        }
    }
}

} // namespace
} // namespace kelvane::cli
