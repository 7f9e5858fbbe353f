// readFile: what the file system says reaches the user as "<path>: <text>".
#include "PlistWriters.h"
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

TEST(FileReader, LargeFilesReadInBlocksGiveTheSameValues) {
    // Past 1 MB the file goes to the reader in blocks; all three forms must
    // come out as they do from the whole text, and errors keep their place.
    std::string text = "// !$*UTF8*$!\n{\n\tobjects = {\n";
    Dictionary objects;
    for (int i = 0; i < 40'000; ++i) {
        const std::string id = "ID" + std::to_string(1'000'000 + i) + "ABCDEF0123456789";
        text += "\t\t" + id + " /* caf\xC3\xA9 " + std::to_string(i) +
                " */ = {isa = PBXFileReference; path = \"File \\\"" + std::to_string(i) +
                "\\\".swift\"; };\n";
        Dictionary object;
        object.insert("isa", Value("PBXFileReference"));
        object.insert("path", Value("File \"" + std::to_string(i) + "\".swift"));
        objects.insert(id, Value(std::move(object)));
    }
    text += "\t};\n}\n";
    Dictionary root;
    root.insert("objects", Value(std::move(objects)));
    const Value expected(std::move(root));
    ASSERT_GT(text.size(), 2'000'000u);

    const kelvane::testing::TempDir dir;
    EXPECT_EQ(readPropertyListFile(dir.write("old.pbxproj", text)), expected);
    EXPECT_EQ(readPropertyListFile(dir.write("xml.plist", testing::writeXml(expected))), expected);
    EXPECT_EQ(readPropertyListFile(dir.write("binary.plist", testing::writeBinary(expected))),
              expected);

    const std::string broken = text.substr(0, text.size() - 8) + "\t} junk\n}\n";
    const std::string path = dir.write("broken.pbxproj", broken);
    std::string whole;
    try {
        (void)readPropertyList(broken, path);
    } catch (const ParseError& error) {
        whole = error.what();
    }
    ASSERT_FALSE(whole.empty());
    try {
        (void)readPropertyListFile(path);
        ADD_FAILURE() << "no error";
    } catch (const ParseError& error) {
        EXPECT_EQ(std::string(error.what()), whole);
        EXPECT_EQ(error.line(), 40'003u); // the last object, now without its ';'
    }
}

} // namespace
} // namespace kelvane::plist
