#include "ScopeFromText.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <chrono>
#include <filesystem>

namespace kelvane::settings {
namespace {

using kelvane::testing::TempDir;
using testing::numbered;
using testing::shown;

std::string value(const XcconfigContents& contents, std::string_view name) {
    return shown(SettingsScope(contents.assignments, {}).evaluate(name));
}

XcconfigContents read(const TempDir& dir, std::string_view relative) {
    return readXcconfig(dir.file(relative), "project xcconfig", dir.path().string());
}

TEST(XcconfigInclude, IsInlinedAtItsLine) {
    TempDir dir;
    dir.write("base.xcconfig", "A = 1");
    dir.write("Main.xcconfig", "A = 0\n# include \"base\"\nA = $(inherited) 2");
    EXPECT_EQ(value(read(dir, "Main.xcconfig"), "A"), "1 2");
}

TEST(XcconfigInclude, LooksBesideEachIncluderThenInTheProjectFolder) {
    TempDir dir;
    dir.write("Config/Main.xcconfig", "#include \"Sub/Inner.xcconfig\"");
    dir.write("Config/Sub/Inner.xcconfig",
              "#include \"Shared.xcconfig\"\n#include \"Both.xcconfig\"\n"
              "#include \"Project.xcconfig\"");
    dir.write("Config/Shared.xcconfig", "SHARED = from config");
    dir.write("Config/Both.xcconfig", "BOTH = from config");
    dir.write("Config/Sub/Both.xcconfig", "BOTH = from sub");
    dir.write("Project.xcconfig", "PROJECT = from project");
    const auto contents = read(dir, "Config/Main.xcconfig");
    EXPECT_TRUE(contents.notes.empty());
    EXPECT_EQ(value(contents, "SHARED"), "from config");
    EXPECT_EQ(value(contents, "BOTH"), "from sub");
    EXPECT_EQ(value(contents, "PROJECT"), "from project");
}

struct MissingCase {
    const char* name;
    std::string directive;
    std::string reason;
    bool sparesIdentity;
};

class MissingInclude : public ::testing::TestWithParam<MissingCase> {};

TEST_P(MissingInclude, BecomesAPlaceholderAtItsLine) {
    TempDir dir;
    dir.write("Main.xcconfig", "A = 1\n" + GetParam().directive + "\nB = 2");
    const auto contents = read(dir, "Main.xcconfig");
    ASSERT_EQ(contents.assignments.size(), 3u);
    const Assignment& placeholder = contents.assignments[1];
    EXPECT_EQ(placeholder.unknownReason, GetParam().reason);
    EXPECT_EQ(placeholder.sparesIdentity, GetParam().sparesIdentity);
    EXPECT_EQ(placeholder.origin,
              (SettingOrigin{dir.file("Main.xcconfig"), 2, "project xcconfig", 1}));
    EXPECT_EQ(value(contents, "B"), "2");
}

INSTANTIATE_TEST_SUITE_P(
    Table, MissingInclude,
    ::testing::Values(
        MissingCase{"required", "#include \"Secrets.xcconfig\"",
                    "Secrets.xcconfig is not in the repository", false},
        MissingCase{"optional", "#include? \"Local/Overrides.xcconfig\"",
                    "Local/Overrides.xcconfig is not in the repository", false},
        MissingCase{"cocoaPods",
                    "#include \"Pods/Target Support Files/Pods-App/Pods-App.debug.xcconfig\"",
                    "Pods/Target Support Files/Pods-App/Pods-App.debug.xcconfig is not in the "
                    "repository",
                    true},
        MissingCase{"insideXcode", "#include \"<DEVELOPER_DIR>/Makefiles/Base.xcconfig\"",
                    "<DEVELOPER_DIR>/Makefiles/Base.xcconfig lies inside Xcode, which Kelvane "
                    "does not read",
                    false}),
    [](const auto& entry) { return std::string(entry.param.name); });

TEST(XcconfigInclude, NonRegularFilesBecomePlaceholdersWithoutBlocking) {
    TempDir dir;
    std::filesystem::create_directories(dir.path() / "Folder.xcconfig");
    ASSERT_EQ(mkfifo(dir.file("Pipe.xcconfig").c_str(), 0600), 0);
    dir.write("Main.xcconfig", "#include \"Folder.xcconfig\"\n#include? \"Pipe.xcconfig\"");
    const auto contents = read(dir, "Main.xcconfig");
    ASSERT_EQ(contents.assignments.size(), 2u);
    EXPECT_EQ(contents.assignments[0].unknownReason,
              dir.file("Folder.xcconfig") + ": Is a directory");
    EXPECT_EQ(contents.assignments[1].unknownReason,
              dir.file("Pipe.xcconfig") + ": Not a regular file");
    // The base file itself, when it is not a file.
    const auto folder = read(dir, "Folder.xcconfig");
    ASSERT_EQ(folder.assignments.size(), 1u);
    EXPECT_TRUE(folder.assignments[0].isPlaceholder());
}

TEST(XcconfigInclude, MissingBaseFileIsOnePlaceholder) {
    TempDir dir;
    const auto contents = read(dir, "Pods/Target Support Files/Pods-App/Pods-App.release.xcconfig");
    ASSERT_EQ(contents.assignments.size(), 1u);
    EXPECT_EQ(contents.assignments[0].unknownReason,
              "Pods-App.release.xcconfig is not in the repository");
    EXPECT_TRUE(contents.assignments[0].sparesIdentity);
}

TEST(XcconfigInclude, CycleIsNotedAndSkipped) {
    TempDir dir;
    dir.write("A.xcconfig", "A = a\n#include \"B.xcconfig\"\n#include \"./A.xcconfig\"");
    dir.write("B.xcconfig",
              "B = b\n#include \"../" + dir.path().filename().string() + "/A.xcconfig\"");
    const auto contents = read(dir, "A.xcconfig");
    EXPECT_EQ(contents.notes,
              (std::vector<std::string>{
                  dir.file("B.xcconfig") + ":2: #include \"../" + dir.path().filename().string() +
                      "/A.xcconfig\" skipped: A.xcconfig would include itself",
                  dir.file("A.xcconfig") +
                      ":3: #include \"./A.xcconfig\" skipped: A.xcconfig would include itself"}));
    EXPECT_EQ(contents.assignments.size(), 2u);
}

TEST(XcconfigInclude, DepthIsBounded) {
    TempDir dir;
    for (int i = 0; i < 40; ++i) {
        dir.write(numbered("L", i, ".xcconfig"),
                  numbered("#include \"L", i + 1, ".xcconfig\"\n") + numbered("A = ", i));
    }
    const auto contents = read(dir, "L0.xcconfig");
    ASSERT_EQ(contents.notes.size(), 1u);
    EXPECT_NE(contents.notes[0].find("includes nest deeper than 32 files"), std::string::npos);
    EXPECT_EQ(value(contents, "A"), "0");
    EXPECT_EQ(value(contents, "B"), "unknown: includes nest deeper than 32 files");
}

TEST(XcconfigInclude, DoublingIncludesStopAtTheFileBound) {
    TempDir dir;
    for (int i = 0; i < 25; ++i) {
        const std::string next = numbered("#include \"D", i + 1, ".xcconfig\"\n");
        dir.write(numbered("D", i, ".xcconfig"), next + next);
    }
    const auto start = std::chrono::steady_clock::now();
    const auto contents = read(dir, "D0.xcconfig");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    ASSERT_FALSE(contents.notes.empty());
    EXPECT_NE(contents.notes.back().find("more than 10000 included files; the rest is not read"),
              std::string::npos);
    EXPECT_TRUE(contents.assignments.back().isPlaceholder());
}

TEST(XcconfigInclude, AssignmentCountIsBounded) {
    std::string text;
    for (int i = 0; i < 100'001; ++i) {
        text += "A = 1\n";
    }
    const auto contents = testing::parse(text);
    EXPECT_EQ(contents.assignments.size(), 100'001u);
    EXPECT_EQ(value(contents, "A"), "unknown: more than 100000 assignments");
}

TEST(XcconfigInclude, BytesAreBoundedBeforeReading) {
    TempDir dir;
    dir.write("Huge.xcconfig", "");
    std::filesystem::resize_file(dir.file("Huge.xcconfig"), std::uintmax_t{65} << 20);
    dir.write("Main.xcconfig", "A = 1\n#include \"Huge.xcconfig\"\nA = 2");
    const auto contents = read(dir, "Main.xcconfig");
    EXPECT_EQ(value(contents, "A"), "unknown: the configuration files exceed 64 MiB");
}

} // namespace
} // namespace kelvane::settings
