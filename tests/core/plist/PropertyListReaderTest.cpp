// Form detection, and round trips of real project files through the other
// two forms.
#include "plist/PropertyListReader.h"
#include "PlistWriters.h"
#include "TempDir.h"
#include "plist/ParseError.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace kelvane::plist {
namespace {

TEST(FormDetection, PicksTheReaderFromTheFirstBytes) {
    const struct {
        std::string bytes;
        Value expected;
    } cases[] = {
        {testing::writeBinary(Value("bin")), Value("bin")},
        {"<?xml version=\"1.0\"?><plist><string>xml</string></plist>", Value("xml")},
        {"\xEF\xBB\xBF<?xml version=\"1.0\"?><string>bom</string>", Value("bom")},
        {" \n\t<plist><string>blanks</string></plist>", Value("blanks")},
        {"<!-- note --><plist><string>comment</string></plist>", Value("comment")},
        {"<!DOCTYPE plist><plist><string>doctype</string></plist>", Value("doctype")},
        {"\"old\"", Value("old")},
        {"<6f6c64>", Value(Data{'o', 'l', 'd'})}, // old-style data, not XML
        {"{ k = v; }", Value([] {
             Dictionary d;
             d.insert("k", Value("v"));
             return d;
         }())},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(readPropertyList(c.bytes, "x"), c.expected) << c.bytes;
    }
}

TEST(FormDetection, ErrorsComeFromTheReaderOfTheDetectedForm) {
    // Text that starts like XML reports XML errors, with expat's position.
    try {
        (void)readPropertyList("<plist><dict>{ a = b; }</dict></plist>", "Info.plist");
        FAIL() << "no error";
    } catch (const ParseError& error) {
        EXPECT_EQ(std::string(error.what()), "Info.plist:1:14: unexpected text '{ a = b; }'");
    }
    try {
        (void)readPropertyList("bplist00", "Info.plist");
        FAIL() << "no error";
    } catch (const ParseError& error) {
        EXPECT_EQ(std::string(error.what()),
                  "Info.plist: too short for a binary property list (8 bytes)");
    }
}

// Up to a few real project files from the shared corpus, when it is there.
std::vector<std::filesystem::path> corpusProjects() {
    const std::filesystem::path corpus = ::kelvane::testing::sourceDir() / "../shared/corpus";
    std::vector<std::filesystem::path> found;
    std::error_code error;
    if (!std::filesystem::is_directory(corpus, error)) {
        return found;
    }
    for (const char* name : {"tuist__XcodeProj", "Automattic__simplenote-ios",
                             "apple__sample-food-truck", "LoopKit__Loop"}) {
        for (const auto& entry : std::filesystem::directory_iterator(corpus / name, error)) {
            const auto file = entry.path() / "project.pbxproj";
            if (entry.path().extension() == ".xcodeproj" && std::filesystem::exists(file)) {
                found.push_back(file);
            }
        }
    }
    return found;
}

TEST(RoundTrip, RealProjectsReadTheSameInAllThreeForms) {
    const auto projects = corpusProjects();
    if (projects.empty()) {
        GTEST_SKIP() << "the shared corpus is not next to the repository";
    }
    for (const auto& path : projects) {
        SCOPED_TRACE(path.string());
        const Value original = readPropertyListFile(path.string());
        const Dictionary* root = original.asDictionary();
        ASSERT_NE(root, nullptr);
        const Dictionary* objects = findDictionary(*root, "objects");
        ASSERT_NE(objects, nullptr);
        ASSERT_NE(findString(*root, "rootObject"), nullptr);
        EXPECT_NE(objects->find(*findString(*root, "rootObject")), nullptr);
        EXPECT_GT(objects->size(), 10u);

        EXPECT_EQ(readPropertyList(testing::writeBinary(original), "binary"), original);
        EXPECT_EQ(readPropertyList(testing::writeXml(original), "xml"), original);
    }
}

TEST(RoundTrip, EveryValueKindSurvivesBinaryAndXml) {
    Dictionary root;
    root.insert("text", Value("caf\xC3\xA9 & <tags> \xF0\x9F\x98\x80"));
    root.insert("integer", Value(std::int64_t{-1234567890123}));
    root.insert("real", Value(0.1));
    root.insert("boolean", Value(true));
    root.insert("date", Value(Date{736'257'600}));
    root.insert("data", Value(Data{0, 1, 2, 3, 254, 255}));
    root.insert("list", Value(Array{Value("a"), Value(Array()), Value(Dictionary())}));
    const Value value(root);
    EXPECT_EQ(readPropertyList(testing::writeBinary(value), "binary"), value);
    EXPECT_EQ(readPropertyList(testing::writeXml(value), "xml"), value);
}

} // namespace
} // namespace kelvane::plist
