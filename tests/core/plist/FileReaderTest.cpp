// readFile: what the file system says reaches the user as "<path>: <text>".
#include "TempDir.h"
#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>

namespace kelvane::plist {
namespace {

std::string errorOf(const std::string& path) {
    try {
        (void)readFile(path);
    } catch (const FileReadError& error) {
        return error.what();
    }
    return "no error";
}

TEST(FileReader, ReadsEveryByte) {
    const kelvane::testing::TempDir dir;
    std::string bytes("a\0b\r\n\xFF", 6);
    bytes += std::string(200'000, 'x'); // more than one read buffer
    const std::string path = dir.write("project.pbxproj", bytes);
    EXPECT_EQ(readFile(path), bytes);
    EXPECT_EQ(readFile(dir.write("empty", "")), "");
}

TEST(FileReader, RefusesWhatIsNotAReadableRegularFile) {
    const kelvane::testing::TempDir dir;
    EXPECT_EQ(errorOf(dir.path().string()), dir.path().string() + ": Is a directory");
    const std::string missing = dir.file("missing.plist");
    EXPECT_EQ(errorOf(missing), missing + ": No such file or directory");

    // A FIFO with no writer would block an open(); it must fail at once.
    const std::string fifo = dir.file("pipe");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(errorOf(fifo), fifo + ": Not a regular file");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(FileReader, ReportsPermissionDenied) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root reads files whatever their permissions";
    }
    const kelvane::testing::TempDir dir;
    const std::string path = dir.write("secret.entitlements", "{}");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    EXPECT_EQ(errorOf(path), path + ": Permission denied");
}

TEST(FileReader, ReadPropertyListFileNamesThePathInErrors) {
    const kelvane::testing::TempDir dir;
    const std::string path = dir.write("project.pbxproj", "{ a = b }");
    try {
        (void)readPropertyListFile(path);
        FAIL() << "no error";
    } catch (const ParseError& error) {
        EXPECT_EQ(std::string(error.what()), path + ":1:9: expected ';' after value, saw '}'");
    }
}

} // namespace
} // namespace kelvane::plist
