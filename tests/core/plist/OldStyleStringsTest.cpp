// Strings and data of the old-style text form: what each spelling reads as.
#include "plist/OldStyleReader.h"

#include <gtest/gtest.h>

namespace kelvane::plist {
namespace {

Value read(std::string_view text) {
    return readOldStyle(text, "test.pbxproj", {});
}

std::string readString(std::string_view text) {
    const Value value = read(text);
    EXPECT_NE(value.asString(), nullptr) << text;
    return value.asString() ? *value.asString() : std::string();
}

struct StringCase {
    std::string_view written;
    std::string expected;
};

TEST(OldStyleStrings, ReadsEverySpellingOfAString) {
    const StringCase cases[] = {
        {"abc", "abc"},
        {"A-Za-z0-9_$/:.-", "A-Za-z0-9_$/:.-"},
        {"/usr/lib/libz.dylib", "/usr/lib/libz.dylib"},
        {"\"with blanks\"", "with blanks"},
        {"'single quoted'", "single quoted"},
        {"\"\"", ""},
        {"''", ""},
        {"\"it's\"", "it's"},
        {"'say \"hi\"'", "say \"hi\""},
        {"\"line\nbreak\"", "line\nbreak"},
        {"\"<group>\"", "<group>"},
        {"\"caf\xC3\xA9 \xE2\x80\xA2\"", "caf\xC3\xA9 \xE2\x80\xA2"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(readString(c.written), c.expected) << c.written;
    }
}

TEST(OldStyleStrings, DecodesEscapes) {
    const StringCase cases[] = {
        {R"("\n\t\r")", "\n\t\r"},
        {R"("\b\f\v\a")", "\b\f\v\a"},
        {R"("\\ \" \'")", "\\ \" '"},
        {R"('\'')", "'"},
        {R"("a\qb")", "aqb"}, // any other character stands for itself
        // Octal: the code point with that number, written as UTF-8.
        {R"("\351")", "\xC3\xA9"},
        {R"("\101\102")", "AB"},
        {R"("\0")", std::string(1, '\0')},
        {R"("\1234")", "S4"}, // three digits at most
        {R"("\8")", "8"},
        // \U: one UTF-16 code unit of up to four digits; pairs combine.
        {R"("\U2022")", "\xE2\x80\xA2"},
        {R"("\U00e9t\U00E9")", "\xC3\xA9t\xC3\xA9"},
        {R"("\U41")", "A"},
        {R"("\Ud83d\Ude00")", "\xF0\x9F\x98\x80"},
        {R"("x\U20ACy")", "x\xE2\x82\xACy"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(readString(c.written), c.expected) << c.written;
    }
}

TEST(OldStyleStrings, AllScalarsAreText) {
    // No integers, reals or booleans in this form: a number stays as written.
    for (const std::string_view number : {"42", "-1", "3.14", "0x10", "YES"}) {
        EXPECT_EQ(readString(number), number);
    }
}

TEST(OldStyleStrings, ReadsHexData) {
    const struct {
        std::string_view written;
        Data expected;
    } cases[] = {
        {"<>", {}},
        {"<0fA0>", {0x0F, 0xA0}},
        {"< 01 02\n03 >", {0x01, 0x02, 0x03}},
        {"<0 1>", {0x01}}, // blanks may even split a byte
        {"<deadBEEF>", {0xDE, 0xAD, 0xBE, 0xEF}},
    };
    for (const auto& c : cases) {
        const Value value = read(c.written);
        ASSERT_NE(value.asData(), nullptr) << c.written;
        EXPECT_EQ(*value.asData(), c.expected) << c.written;
    }
}

TEST(OldStyleStrings, KeysMayBeQuotedInAnyWay) {
    const Value value = read(R"({ plain = 1; "quoted key" = 2; 'single' = 3; "\U00e9" = 4; })");
    const Dictionary& dictionary = *value.asDictionary();
    EXPECT_EQ(*findString(dictionary, "plain"), "1");
    EXPECT_EQ(*findString(dictionary, "quoted key"), "2");
    EXPECT_EQ(*findString(dictionary, "single"), "3");
    EXPECT_EQ(*findString(dictionary, "\xC3\xA9"), "4");
}

} // namespace
} // namespace kelvane::plist
