// Dictionaries, arrays, comments and the file as a whole in the old-style form.
#include "plist/OldStyleReader.h"
#include "plist/ParseError.h"

#include <gtest/gtest.h>

namespace kelvane::plist {
namespace {

Value read(std::string_view text, const ReadLimits& limits = {}) {
    return readOldStyle(text, "test.pbxproj", limits);
}

Dictionary dictionaryOf(std::vector<std::pair<std::string, Value>> entries) {
    Dictionary dictionary;
    for (auto& [key, value] : entries) {
        dictionary.insert(key, std::move(value));
    }
    return dictionary;
}

TEST(OldStyleStructure, ReadsNestedContainersInDocumentOrder) {
    const Value value = read(R"(// !$*UTF8*$!
{
	archiveVersion = 1;
	classes = {
	};
	objects = {

/* Begin PBXBuildFile section */
		0A1B2C3D4E5F60718293A4B5 /* main.swift in Sources */ = {isa = PBXBuildFile; fileRef = 111111111111111111111111 /* main.swift */; };
/* End PBXBuildFile section */
		222222222222222222222222 = {
			isa = PBXGroup;
			children = (
				111111111111111111111111 /* main.swift */,
			);
			sourceTree = "<group>";
		};
	};
	rootObject = 333333333333333333333333 /* Project object */;
}
)");
    const Value expected = dictionaryOf({
        {"archiveVersion", "1"},
        {"classes", Dictionary()},
        {"objects",
         dictionaryOf({
             {"0A1B2C3D4E5F60718293A4B5",
              dictionaryOf({{"isa", "PBXBuildFile"}, {"fileRef", "111111111111111111111111"}})},
             {"222222222222222222222222",
              dictionaryOf({{"isa", "PBXGroup"},
                            {"children", Array{Value("111111111111111111111111")}},
                            {"sourceTree", "<group>"}})},
         })},
        {"rootObject", "333333333333333333333333"},
    });
    EXPECT_EQ(value, expected);
    std::vector<std::string> keys;
    for (const auto& entry : *value.asDictionary()) {
        keys.push_back(entry.key);
    }
    EXPECT_EQ(keys,
              (std::vector<std::string>{"archiveVersion", "classes", "objects", "rootObject"}));
}

TEST(OldStyleStructure, ArraysTakeATrailingCommaOrNone) {
    const Array expected{Value("a"), Value("b")};
    for (const std::string_view text : {"(a, b)", "(a, b,)", "( a ,b , )", "(a /**/,/**/b)"}) {
        const Value value = read(text);
        ASSERT_NE(value.asArray(), nullptr) << text;
        EXPECT_EQ(*value.asArray(), expected) << text;
    }
    EXPECT_EQ(*read("()").asArray(), Array());
    EXPECT_EQ(*read("(())").asArray(), Array{Value(Array())});
}

TEST(OldStyleStructure, CommentsMaySitBetweenAnyTokens) {
    const Value value = read("/*a*/{/*b*/\"k\"/*c*/=/*d*/v //e\n;/*f*/}// end\n/* tail */");
    EXPECT_EQ(value, Value(dictionaryOf({{"k", "v"}})));
    // A slash inside an unquoted string is part of it, not a comment, as in
    // Apple's reader: Xcode always writes a blank before its comments.
    EXPECT_EQ(*read("{ p = a//b; }").asDictionary()->find("p")->asString(), "a//b");
    EXPECT_THROW((void)read("(a/*b*/)"), ParseError); // "a/", then a stray '*'

    EXPECT_EQ(*read("{ p = /* x */ /usr/bin; }").asDictionary()->find("p")->asString(), "/usr/bin");
}

TEST(OldStyleStructure, BlanksAndCommentsAloneReadAsAnEmptyDictionary) {
    for (const std::string_view text :
         {" ", "\n\n", "// !$*UTF8*$!\n", "/* nothing */", "\xEF\xBB\xBF  "}) {
        const Value value = read(text);
        ASSERT_NE(value.asDictionary(), nullptr) << text;
        EXPECT_TRUE(value.asDictionary()->empty()) << text;
    }
}

TEST(OldStyleStructure, RootMayBeAStringAnArrayOrData) {
    EXPECT_EQ(*read("  \"root\"  ").asString(), "root");
    EXPECT_EQ(*read("bare").asString(), "bare");
    EXPECT_EQ(*read("(x)").asArray(), Array{Value("x")});
    EXPECT_EQ(*read("<00>").asData(), Data{0});
}

TEST(OldStyleStructure, RepeatedKeyKeepsFirstPositionAndLastValue) {
    const Value value = read("{ a = 1; b = 2; a = 3; }");
    const auto& entries = value.asDictionary()->entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].key, "a");
    EXPECT_EQ(*entries[0].value.asString(), "3");
    EXPECT_EQ(entries[1].key, "b");

    // The same in a dictionary large enough to be indexed.
    std::string large = "{";
    for (int i = 0; i < 100; ++i) {
        large += " k" + std::to_string(i) + " = v" + std::to_string(i) + ";";
    }
    large += " k7 = again; }";
    const Value largeValue = read(large);
    const Dictionary& dictionary = *largeValue.asDictionary();
    EXPECT_EQ(dictionary.size(), 100u);
    EXPECT_EQ(dictionary.entries()[7].key, "k7");
    EXPECT_EQ(*findString(dictionary, "k7"), "again");
    EXPECT_EQ(*findString(dictionary, "k99"), "v99");
}

TEST(OldStyleStructure, LargeContainersKeepEveryChildInOrder) {
    // Past a few thousand children a container stores them differently;
    // nothing about the result may show it.
    std::string text = "{ list = (";
    for (int i = 0; i < 10'000; ++i) {
        text += std::to_string(i) + ",";
    }
    text += "); objects = {";
    for (int i = 0; i < 10'000; ++i) {
        text += " id" + std::to_string(i) + " = { n = " + std::to_string(i) + "; };";
    }
    text += " }; }";
    const Value value = read(text);
    const Dictionary& root = *value.asDictionary();
    const Array& list = *findArray(root, "list");
    ASSERT_EQ(list.size(), 10'000u);
    EXPECT_EQ(*list[9'999].asString(), "9999");
    const Dictionary& objects = *findDictionary(root, "objects");
    ASSERT_EQ(objects.size(), 10'000u);
    EXPECT_EQ(objects.entries()[5'000].key, "id5000");
    EXPECT_EQ(*findString(*findDictionary(objects, "id1234"), "n"), "1234");
}

TEST(OldStyleStructure, NestingIsBoundedWithoutExhaustingTheStack) {
    ReadLimits limits;
    limits.maxDepth = 3;
    EXPECT_NO_THROW(read("(((x)))", limits));
    EXPECT_THROW(read("((((x))))", limits), ParseError);
    // A million open brackets: a clear error, not a crash.
    const std::string deep(1'000'000, '(');
    try {
        read(deep);
        FAIL() << "no error";
    } catch (const ParseError& error) {
        EXPECT_EQ(error.reason(), "nesting deeper than 512 levels");
        EXPECT_EQ(error.column(), 513u);
    }
}

} // namespace
} // namespace kelvane::plist
