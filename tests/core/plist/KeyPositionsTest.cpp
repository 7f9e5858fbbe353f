// Where the text readers say a key stands, in both text forms, whole and
// read in blocks.
#include "TempDir.h"
#include "plist/OldStyleReader.h"
#include "plist/PropertyListReader.h"
#include "plist/XmlReader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace kelvane::plist {
namespace {

using Path = std::initializer_list<std::string_view>;

TEST(KeyPositions, OldStyleKeysAtTheirLineAndCharacterColumn) {
    // CRLF and a lone CR both end lines; "é" is one column of two bytes.
    const std::string text = "// !$*UTF8*$!\r\n{\r\n\tobjects = {\r"
                             "\t\tA1 /* é */ = {isa = X; \"quoted key\" = 1; buildSettings = {\n"
                             "\t\t\tPRODUCT_BUNDLE_IDENTIFIER = com.example;\n"
                             "\t\t\tlist = ( { inner = 1; } );\n"
                             "\t\t}; };\n\t};\n}\n";
    KeyPositions positions;
    (void)readOldStyle(text, "test.pbxproj", {}, &positions);

    EXPECT_EQ(positions.find({"objects"}), (TextPosition{3, 2}));
    EXPECT_EQ(positions.find({"objects", "A1"}), (TextPosition{4, 3}));
    EXPECT_EQ(positions.find({"objects", "A1", "isa"}), (TextPosition{4, 17}));
    EXPECT_EQ(positions.find({"objects", "A1", "quoted key"}), (TextPosition{4, 26}));
    EXPECT_EQ(positions.find({"objects", "A1", "buildSettings", "PRODUCT_BUNDLE_IDENTIFIER"}),
              (TextPosition{5, 4}));
    // An array on the way counts as "".
    EXPECT_EQ(positions.find({"objects", "A1", "buildSettings", "list", "", "inner"}),
              (TextPosition{6, 15}));
    EXPECT_FALSE(positions.find({"objects", "A1", "inner"}));
}

TEST(KeyPositions, FilterKeepsOnlyWantedKeysAndLastRepeatWins) {
    const std::string text = "{ a = { keep = 1; };\n b = { keep = 3; keep = 4; }; c = { drop = 5; }; }";
    KeyPositions positions([](const KeyPositions::Path& path) {
        return path.size() == 1 && path[0] != "c";
    });
    (void)readOldStyle(text, "test.pbxproj", {}, &positions);

    EXPECT_EQ(positions.size(), 2U);
    EXPECT_EQ(positions.find({"a", "keep"}), (TextPosition{1, 9}));
    EXPECT_EQ(positions.find({"b", "keep"}), (TextPosition{2, 18}));
    EXPECT_FALSE(positions.find({"a"}));
}

TEST(KeyPositions, XmlKeysAtTheirKeyElement) {
    const std::string text = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
	<key>com.apple.security.application-groups</key>
	<array>
		<dict><key>inner</key><true/></dict>
	</array>
	<key>NSCameraUsageDescription</key><string>Scans</string>
</dict>
</plist>
)";
    KeyPositions positions;
    (void)readXml(text, "Info.plist", {}, &positions);

    EXPECT_EQ(positions.find({"com.apple.security.application-groups"}), (TextPosition{4, 2}));
    EXPECT_EQ(positions.find({"com.apple.security.application-groups", "", "inner"}),
              (TextPosition{6, 9}));
    EXPECT_EQ(positions.find({"NSCameraUsageDescription"}), (TextPosition{8, 2}));
}

// A file large enough to be read in blocks: every position recorded must
// name a line that holds the key at that column, whatever block it was in.
TEST(KeyPositions, BlockReadPositionsPointAtTheKeyInTheFile) {
    std::ostringstream text;
    text << "// !$*UTF8*$!\n{\n\tobjects = {\n";
    for (int i = 0; i < 40'000; ++i) {
        text << "\t\tID" << i << " /* ñ " << i << " */ = {isa = XCBuildConfiguration; "
             << "buildSettings = {\n\t\t\t\"KEY " << i << "\" = \"v\";\n\t\t\tOTHER = (a, b);\n\t\t}; };\n";
    }
    text << "\t};\n}\n";
    const std::string bytes = text.str();
    ASSERT_GT(bytes.size(), 2U << 20);
    const kelvane::testing::TempDir dir;
    const std::string file = dir.write("project.pbxproj", bytes);

    const auto wanted = [](const KeyPositions::Path& path) { return path.size() == 3; };
    KeyPositions streamed(wanted);
    KeyPositions whole(wanted);
    (void)readPropertyListFile(file, {}, &streamed);
    (void)readOldStyle(bytes, file, {}, &whole);

    std::vector<std::string> lines;
    std::istringstream in(bytes);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    ASSERT_EQ(streamed.size(), 80'000U);
    for (const int i : {0, 1, 6'553, 20'000, 39'999}) {
        const std::string id = "ID" + std::to_string(i);
        const std::string key = "KEY " + std::to_string(i);
        const auto at = streamed.find({"objects", id, "buildSettings", key});
        ASSERT_TRUE(at) << key;
        EXPECT_EQ(at, whole.find({"objects", id, "buildSettings", key}));
        EXPECT_EQ(lines.at(at->line - 1).substr(at->column - 1, key.size() + 1), "\"" + key);
        EXPECT_EQ(streamed.find({"objects", id, "buildSettings", "OTHER"}),
                  (TextPosition{at->line + 1, 4}));
    }
}

} // namespace
} // namespace kelvane::plist
