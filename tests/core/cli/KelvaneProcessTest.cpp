#include "TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#if defined(__unix__) || defined(__APPLE__)
#include <sys/wait.h>

namespace kelvane {
namespace {

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

std::string readText(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Runs the real executable, so exit statuses and the split between the two
// output streams are what a shell or CI system sees.
Outcome runKelvane(const std::string& arguments) {
    const testing::TempDir dir;
    const std::string out = dir.file("out");
    const std::string err = dir.file("err");
    const std::string command = "\"" KELVANE_EXECUTABLE "\" " + arguments + " >\"" + out +
                                "\" 2>\"" + err + "\" </dev/null";
    const int raw = std::system(command.c_str());
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, readText(out), readText(err)};
}

TEST(KelvaneProcess, ParserErrorGoesToStandardErrorWithExitStatusTwo) {
    testing::TempDir dir;
    dir.write("App.xcodeproj/xcshareddata/keep", "");
    const Outcome outcome =
        runKelvane("inspect --format json \"" + dir.file("App.xcodeproj") + "\"");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "kelvane: project.pbxproj not found\n");
}

TEST(KelvaneProcess, LoadedProjectExitsCleanly) {
    const Outcome outcome = runKelvane(
        "inspect \"" + (testing::sourceDir() / "tests/fixtures/model/Orbit").string() + "\"");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("OrbitWidget  appExtension"), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.err, "");
}

TEST(KelvaneProcess, CommandLineMistakesAreNotCleanExits) {
    for (const char* arguments :
         {"", "inspect", "inspect A.xcodeproj --format xml", "frobnicate"}) {
        const Outcome outcome = runKelvane(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_NE(outcome.err, "") << arguments;
    }
}

TEST(KelvaneProcess, VersionAndHelpExitCleanly) {
    const Outcome version = runKelvane("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, KELVANE_VERSION "\n");
    const Outcome help = runKelvane("inspect --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--format"), std::string::npos);
}

} // namespace
} // namespace kelvane
#endif
