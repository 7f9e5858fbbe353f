// The XML form: every element, and a gallery of bad documents with the
// position expat gives and the reason.
#include "plist/XmlReader.h"
#include "plist/IsoDate.h"
#include "plist/ParseError.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

namespace kelvane::plist {
namespace {

Value read(std::string_view text, const ReadLimits& limits = {}) {
    return readXml(text, "Info.plist", limits);
}

std::string document(std::string_view body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n" +
           std::string(body) + "\n</plist>\n";
}

TEST(XmlReader, ReadsEveryElement) {
    const Value value = read(document(R"(<dict>
	<key>text</key><string>a &amp; b &lt;c&gt; &#x2022;</string>
	<key>empty</key><string/>
	<key>integer</key><integer>42</integer>
	<key>negative</key><integer>-7</integer>
	<key>hex</key><integer>0x1F</integer>
	<key>real</key><real>2.5</real>
	<key>yes</key><true/>
	<key>no</key><false/>
	<key>date</key><date>2024-05-01T12:00:00Z</date>
	<key>data</key><data>
		AAEC
		/w==
	</data>
	<key>list</key><array><string>x</string><array/><dict/></array>
</dict>)"));
    const Dictionary& d = *value.asDictionary();
    EXPECT_EQ(*findString(d, "text"), "a & b <c> \xE2\x80\xA2");
    EXPECT_EQ(*findString(d, "empty"), "");
    EXPECT_EQ(*d.find("integer")->asInteger(), 42);
    EXPECT_EQ(*d.find("negative")->asInteger(), -7);
    EXPECT_EQ(*d.find("hex")->asInteger(), 31);
    EXPECT_EQ(*d.find("real")->asReal(), 2.5);
    EXPECT_EQ(*d.find("yes")->asBoolean(), true);
    EXPECT_EQ(*d.find("no")->asBoolean(), false);
    EXPECT_EQ(d.find("date")->asDate()->secondsSince2001, 736'257'600.0);
    EXPECT_EQ(*d.find("data")->asData(), (Data{0x00, 0x01, 0x02, 0xFF}));
    EXPECT_EQ(*findArray(d, "list"), (Array{Value("x"), Value(Array()), Value(Dictionary())}));
    std::vector<std::string> keys;
    for (const auto& entry : d) {
        keys.push_back(entry.key);
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"text", "empty", "integer", "negative", "hex", "real",
                                              "yes", "no", "date", "data", "list"}));
}

TEST(XmlReader, ReadsIntegersAtTheirLimits) {
    const struct {
        std::string_view text;
        std::int64_t expected;
    } cases[] = {
        {"9223372036854775807", INT64_MAX},
        {"-9223372036854775808", INT64_MIN},
        {" 12 ", 12},
        {"+5", 5},
        {"0x7fffffffffffffff", INT64_MAX},
        {"-0x10", -16},
    };
    for (const auto& c : cases) {
        const Value value = read("<plist><integer>" + std::string(c.text) + "</integer></plist>");
        ASSERT_NE(value.asInteger(), nullptr) << c.text;
        EXPECT_EQ(*value.asInteger(), c.expected) << c.text;
    }
}

TEST(XmlReader, ReadsTheRealFormsApplesWriterUses) {
    const auto real = [](std::string_view text) {
        return *read("<plist><real>" + std::string(text) + "</real></plist>").asReal();
    };
    EXPECT_EQ(real("1e+16"), 1e16);
    EXPECT_EQ(real("-0.5"), -0.5);
    EXPECT_EQ(real("3"), 3.0);
    EXPECT_TRUE(std::isnan(real("nan")));
    EXPECT_EQ(real("+infinity"), INFINITY);
    EXPECT_EQ(real("-infinity"), -INFINITY);
    EXPECT_EQ(real("inf"), INFINITY);
    EXPECT_EQ(real("-INF"), -INFINITY);
}

TEST(XmlReader, RootMayStandWithoutPlistElement) {
    EXPECT_EQ(*read("<string>alone</string>").asString(), "alone");
    EXPECT_EQ(*read("\xEF\xBB\xBF<plist><true/></plist>").asBoolean(), true);
}

TEST(XmlReader, RepeatedKeyKeepsFirstPositionAndLastValue) {
    const Value value =
        read("<plist><dict><key>a</key><string>1</string><key>b</key><string>2</string>"
             "<key>a</key><string>3</string></dict></plist>");
    const auto& entries = value.asDictionary()->entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].key, "a");
    EXPECT_EQ(*entries[0].value.asString(), "3");
}

struct BadDocument {
    std::string_view text;
    std::size_t line;
    std::size_t column;
    std::string_view reason;
};

const BadDocument kBadDocuments[] = {
    {"<plist><integer>abc</integer></plist>", 1, 8, "invalid integer 'abc'"},
    {"<plist><integer>99999999999999999999</integer></plist>", 1, 8,
     "invalid integer '99999999999999999999'"},
    {"<plist><integer>1.5</integer></plist>", 1, 8, "invalid integer '1.5'"},
    {"<plist><integer></integer></plist>", 1, 8, "invalid integer ''"},
    {"<plist><real>1.5x</real></plist>", 1, 8, "invalid real '1.5x'"},
    {"<plist><date>2024-13-01T00:00:00Z</date></plist>", 1, 8,
     "invalid date '2024-13-01T00:00:00Z'"},
    {"<plist><date>2023-02-29T00:00:00Z</date></plist>", 1, 8,
     "invalid date '2023-02-29T00:00:00Z'"},
    {"<plist><data>@@</data></plist>", 1, 8, "invalid base64 in <data>"},
    {"<plist><data>A</data></plist>", 1, 8, "invalid base64 in <data>"},
    {"<plist><true>x</true></plist>", 1, 8, "unexpected text 'x' in <true>"},
    {"<plist><foo/></plist>", 1, 8, "unknown element <foo>"},
    {"<plist><dict><key>a</key></dict></plist>", 1, 26, "key 'a' has no value"},
    {"<plist><dict><key>a</key><key>b</key></dict></plist>", 1, 26, "key 'a' has no value"},
    {"<plist><dict><string>a</string></dict></plist>", 1, 14,
     "expected <key> in <dict>, saw <string>"},
    {"<plist><key>a</key></plist>", 1, 8, "<key> outside <dict>"},
    {"<plist><array><key>a</key></array></plist>", 1, 15, "<key> outside <dict>"},
    {"<plist><string>a</string><string>b</string></plist>", 1, 26,
     "a second value <string> in <plist>"},
    {"<plist><array>text</array></plist>", 1, 15, "unexpected text 'text'"},
    {"<plist><string>a<b/></string></plist>", 1, 17, "unexpected <b> inside <string>"},
    {"<plist><array><plist/></array></plist>", 1, 15, "unexpected <plist> inside another element"},
    {"<plist></plist>", 1, 8, "<plist> holds no value"},
    {"<plist>\n  <dict>\n    <key>n</key>\n    <integer>x</integer>\n  </dict>\n</plist>", 4, 5,
     "invalid integer 'x'"},
    // Expat's own findings keep its wording.
    {"<plist><string>a</dict></plist>", 1, 19, "mismatched tag"},
    {"<plist><string>a</string>", 1, 26, "no element found"},
    {"", 1, 1, "no element found"},
    {"<plist><string>a</string></plist><plist/>", 1, 34, "junk after document element"},
    {"<plist><string>\xFF</string></plist>", 1, 16, "not well-formed (invalid token)"},
};

TEST(XmlReader, BadDocumentsReportLineColumnAndReason) {
    for (const auto& bad : kBadDocuments) {
        SCOPED_TRACE(std::string(bad.text));
        try {
            (void)read(bad.text);
            ADD_FAILURE() << "no error";
        } catch (const ParseError& error) {
            EXPECT_EQ(error.reason(), bad.reason);
            EXPECT_EQ(error.line(), bad.line);
            EXPECT_EQ(error.column(), bad.column);
            EXPECT_EQ(std::string(error.what()), "Info.plist:" + std::to_string(bad.line) + ":" +
                                                     std::to_string(bad.column) + ": " +
                                                     std::string(bad.reason));
        }
    }
}

TEST(XmlReader, RefusesEntityDeclarationsBeforeTheyExpand) {
    std::string laughs = "<?xml version=\"1.0\"?>\n<!DOCTYPE plist [\n<!ENTITY lol \"lol\">\n";
    for (int i = 1; i < 10; ++i) {
        laughs += "<!ENTITY lol" + std::to_string(i) + " \"";
        for (int k = 0; k < 10; ++k) {
            laughs += "&lol" + (i == 1 ? std::string() : std::to_string(i - 1)) + ";";
        }
        laughs += "\">\n";
    }
    laughs += "]>\n<plist><string>&lol9;</string></plist>\n";
    const auto start = std::chrono::steady_clock::now();
    try {
        (void)read(laughs);
        ADD_FAILURE() << "no error";
    } catch (const ParseError& error) {
        EXPECT_EQ(error.reason(), "entity declarations are not allowed");
        EXPECT_EQ(error.line(), 3u);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(XmlReader, NestingIsBounded) {
    std::string deep = "<plist>";
    for (int i = 0; i < 600; ++i) {
        deep += "<array>";
    }
    try {
        (void)read(deep);
        ADD_FAILURE() << "no error";
    } catch (const ParseError& error) {
        EXPECT_EQ(error.reason(), "nesting deeper than 512 levels");
    }
}

TEST(IsoDate, ParsesAndFormatsTheReferenceCalendar) {
    const struct {
        std::string_view text;
        double seconds;
    } cases[] = {
        {"2001-01-01T00:00:00Z", 0},
        {"2000-12-31T23:59:59Z", -1},
        {"1970-01-01T00:00:00Z", -978'307'200},
        {"2024-02-29T00:00:00Z", 730'857'600},
        {"2024-05-01T12:00:00Z", 736'257'600},
    };
    for (const auto& c : cases) {
        const auto date = parseIsoDate(c.text);
        ASSERT_TRUE(date.has_value()) << c.text;
        EXPECT_EQ(date->secondsSince2001, c.seconds) << c.text;
        EXPECT_EQ(formatIsoDate(*date), c.text);
    }
    EXPECT_EQ(parseIsoDate("2024-05-01T12:00:00.25Z")->secondsSince2001, 736'257'600.25);
    for (const std::string_view bad : {"2024-05-01", "2024-05-01T12:00:00", "2024-05-01 12:00:00Z",
                                       "2024-04-31T00:00:00Z", "2024-05-01T24:00:00Z"}) {
        EXPECT_FALSE(parseIsoDate(bad).has_value()) << bad;
    }
}

} // namespace
} // namespace kelvane::plist
