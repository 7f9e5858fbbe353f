#include "checks/EntitlementsReader.h"

#include "PlistFixtures.h"
#include "TempDir.h"
#include "plist/ParseError.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kelvane {
namespace {

using test::withEntitlements;

TargetContext app() {
    TargetContext target;
    target.name = "App";
    target.type = TargetType::application;
    return target;
}

// {"k" = "v"} in the binary form: three objects, one-byte offsets and refs.
std::string binaryDictionary() {
    std::string bytes = "bplist00";
    bytes += std::string("\xD1\x01\x02", 3); // dictionary of 1: key ref 1, value ref 2
    bytes += std::string("\x51k\x51v", 4);   // two one-character ASCII strings
    bytes += std::string("\x08\x0B\x0D", 3); // offset table
    bytes += std::string(6, '\0');           // unused, sort version
    bytes += std::string("\x01\x01", 2);     // offset size, reference size
    bytes += std::string(7, '\0') + "\x03";  // object count
    bytes += std::string(8, '\0');           // top object
    bytes += std::string(7, '\0') + "\x0F";  // offset table position
    return bytes;
}

TEST(EntitlementsReader, ReadsEveryPropertyListForm) {
    testing::TempDir dir;
    const struct {
        const char* name;
        std::string bytes;
    } forms[] = {
        {"xml", test::plistDocument(test::entry("k", test::text("v")))},
        {"old-style", "{ k = v; }"},
        {"binary", binaryDictionary()},
    };
    for (const auto& form : forms) {
        SCOPED_TRACE(form.name);
        const auto entitlements =
            readEntitlements(withEntitlements(app(), dir.write(form.name, form.bytes)));
        ASSERT_EQ(entitlements.size(), 1u);
        ASSERT_NE(entitlements.find("k"), nullptr);
        EXPECT_EQ(*entitlements.find("k"), plist::Value("v"));
    }
}

TEST(EntitlementsReader, TargetsWithoutUsableEntitlementsReadAsEmpty) {
    testing::TempDir dir;
    const struct {
        const char* name;
        TargetContext target;
    } cases[] = {
        {"no-entitlements-setting", app()},
        {"file-gone-since-loading", withEntitlements(app(), dir.file("Gone.entitlements"))},
        {"folder-on-the-way-missing", withEntitlements(app(), dir.file("No/Such/A.entitlements"))},
        {"array-root", withEntitlements(app(), dir.write("List.entitlements", "(a, b)"))},
        {"text-root", withEntitlements(app(), dir.write("Text.entitlements",
                                                        "<plist><string>x</string></plist>"))},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(readEntitlements(c.target).empty());
    }
}

// An existing file the reader cannot use is a fault to report, not a
// configuration to skip: the check that reads it must fail.
TEST(EntitlementsReader, BrokenFilesThrowTheReadersError) {
    testing::TempDir dir;
    const std::string truncated = test::truncatedDocument(test::entry("k", test::text("v")));
    EXPECT_THROW((void)readEntitlements(
                     withEntitlements(app(), dir.write("Truncated.entitlements", truncated))),
                 plist::ParseError);
    EXPECT_THROW((void)readEntitlements(
                     withEntitlements(app(), dir.write("Garbage.entitlements", "{ k = ; }"))),
                 plist::ParseError);
    EXPECT_THROW((void)readEntitlements(withEntitlements(
                     app(), dir.write("Cut.bin", binaryDictionary().substr(0, 45)))),
                 plist::ParseError);
    // A CODE_SIGN_ENTITLEMENTS of "" resolves to the project's folder.
    dir.write("Folder/placeholder", "");
    EXPECT_THROW((void)readEntitlements(withEntitlements(app(), dir.file("Folder"))),
                 plist::FileReadError);
}

TEST(EntitlementsReader, IdentifierListsAreTextOrArraysOfText) {
    using List = std::optional<std::vector<std::string>>;
    EXPECT_EQ(identifierList(plist::Value("group.a")), List({"group.a"}));
    EXPECT_EQ(identifierList(plist::Value(plist::Array{"b", "a", "b"})), List({"b", "a", "b"}))
        << "file order and duplicates are kept";
    EXPECT_EQ(identifierList(plist::Value(plist::Array{})), List(std::vector<std::string>{}));
    EXPECT_EQ(identifierList(plist::Value(plist::Array{"a", std::int64_t{1}})), std::nullopt);
    EXPECT_EQ(identifierList(plist::Value(true)), std::nullopt);
    EXPECT_EQ(identifierList(plist::Value(plist::Dictionary{})), std::nullopt);
}

} // namespace
} // namespace kelvane
