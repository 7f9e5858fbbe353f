// The old-style reader's bad inputs and exactly what it says about each,
// read together like a gallery: line and column are 1-based, columns count
// characters, and the reason follows "expected X, saw 'Y'".
#include "plist/ByteSource.h"
#include "plist/OldStyleReader.h"
#include "plist/ParseError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace kelvane::plist {
namespace {

struct BadInput {
    std::string_view text;
    std::size_t line;
    std::size_t column;
    std::string_view reason;
};

const BadInput kBadInputs[] = {
    {"", 1, 1, "the file is empty"},
    {"{ a = b }", 1, 9, "expected ';' after value, saw '}'"},
    {"{ a = b;", 1, 9, "unexpected end of file"},
    {"{\n", 2, 1, "unexpected end of file"},
    {"{ a = b", 1, 8, "unexpected end of file"},
    {"{ a b; }", 1, 5, "expected '=' after key, saw 'b'"},
    {"{ = b; }", 1, 3, "expected a key or '}', saw '='"},
    {"{ a = {; }", 1, 8, "expected a key or '}', saw ';'"},
    {"{ (a) = b; }", 1, 3, "expected a key or '}', saw '('"},
    {"{ <00> = b; }", 1, 3, "expected a key or '}', saw '<'"},
    {"{ a = ; }", 1, 7, "expected a value, saw ';'"},
    {"{ a = \x01; }", 1, 7, "expected a value, saw byte 0x01"},
    {"( a b )", 1, 5, "expected ',' or ')' after array element, saw 'b'"},
    {"(a,,)", 1, 4, "expected a value, saw ','"},
    {"(a", 1, 3, "unexpected end of file"},
    {"{}\n}", 2, 1, "expected end of file after the root value, saw '}'"},
    {"a b", 1, 3, "expected end of file after the root value, saw 'b'"},
    {"\"a\" ;", 1, 5, "expected end of file after the root value, saw ';'"},
    {"/* open", 1, 1, "unterminated comment"},
    {"{ a = b; /* x *", 1, 10, "unterminated comment"},
    {"{ a = \"abc; }", 1, 7, "unterminated string"},
    {"{ a = 'abc\\'; }", 1, 7, "unterminated string"},
    {"{ a = \"abc\\", 1, 7, "unterminated string"},
    {"{ a = <0g>; }", 1, 9, "expected a hexadecimal digit or '>' in data, saw 'g'"},
    {"{ a = <abc>; }", 1, 11, "odd number of hexadecimal digits in data"},
    {"{ a = <ab", 1, 7, "unterminated data"},
    {"{ a = \"\xFF\"; }", 1, 8, "invalid UTF-8 (byte 0xff)"},
    {"{ a = \"\xC3\"; }", 1, 8, "invalid UTF-8 (byte 0xc3)"},
    {"{ a = \"\xED\xA0\x80\"; }", 1, 8, "invalid UTF-8 (byte 0xed)"}, // a surrogate
    {"{ a = \"\xC0\xAF\"; }", 1, 8, "invalid UTF-8 (byte 0xc0)"},     // overlong
    {"{ a = \"\\UD83D\"; }", 1, 8, "unpaired UTF-16 surrogate in \\U escape"},
    {"{ a = \"\\UDE00\"; }", 1, 8, "unpaired UTF-16 surrogate in \\U escape"},
    {"{ a = \"\\UD83D\\U0041\"; }", 1, 8, "unpaired UTF-16 surrogate in \\U escape"},
    {"{ a = \"\\Uxyz\"; }", 1, 8, "expected hexadecimal digits after \\U"},
    // Columns count characters, not bytes.
    {"{ \"\xC3\xA9\" = x y }", 1, 11, "expected ';' after value, saw 'y'"},
    {"{ a = x \xC3\xA9 }", 1, 9, "expected ';' after value, saw '\xC3\xA9'"},
    // Lines count through comments, and "\r\n" is one line break.
    {"// !$*UTF8*$!\n{\n\ta = b;\n\tc = ;\n}", 4, 6, "expected a value, saw ';'"},
    {"{\r\n a = b\r\n}", 3, 1, "expected ';' after value, saw '}'"},
    {"{\n/* one\ntwo */ a = b\n}", 4, 1, "expected ';' after value, saw '}'"},
    {"{ a = b\n", 2, 1, "unexpected end of file"},
    {"{ a = b\nc", 2, 1, "expected ';' after value, saw 'c'"},
    {"{ a = b\n\n ;; }", 3, 3, "expected a key or '}', saw ';'"},
    {"{ a = b ", 1, 9, "unexpected end of file"},
    {"(a,\n", 2, 1, "unexpected end of file"},
    {"{ a = b\t\n", 2, 1, "unexpected end of file"},
    {"{ a\n= b\n; \"k\" \n x", 4, 2, "expected '=' after key, saw 'x'"},
    {"x\n\ny", 3, 1, "expected end of file after the root value, saw 'y'"},
    {"x\n\n\n", 0, 0, ""}, // fine: blanks after the root
};

TEST(OldStyleErrors, ReportLineColumnAndReason) {
    for (const auto& bad : kBadInputs) {
        SCOPED_TRACE(std::string(bad.text));
        if (bad.line == 0) {
            EXPECT_NO_THROW((void)readOldStyle(bad.text, "App.pbxproj", {}));
            continue;
        }
        try {
            (void)readOldStyle(bad.text, "App.pbxproj", {});
            ADD_FAILURE() << "no error";
        } catch (const ParseError& error) {
            EXPECT_EQ(error.reason(), bad.reason);
            EXPECT_EQ(error.line(), bad.line);
            EXPECT_EQ(error.column(), bad.column);
            EXPECT_EQ(std::string(error.what()), "App.pbxproj:" + std::to_string(bad.line) + ":" +
                                                     std::to_string(bad.column) + ": " +
                                                     std::string(bad.reason));
        }
    }
}

// Hands out the text a few bytes at a time, so that every token of a short
// text meets the end of the reader's window somewhere.
class TrickleSource : public ByteSource {
public:
    TrickleSource(std::string_view text, std::size_t piece) : text_(text), piece_(piece) {}
    std::size_t read(char* buffer, std::size_t size) override {
        const std::size_t count = std::min({size, piece_, text_.size()});
        text_.copy(buffer, count);
        text_.remove_prefix(count);
        return count;
    }

private:
    std::string_view text_;
    std::size_t piece_;
};

// What a read gives, as comparable text: the value's shape or the error.
std::string outcome(const std::function<Value()>& read) {
    try {
        const Value value = read();
        return "value " + std::to_string(static_cast<int>(value.kind()));
    } catch (const ParseError& error) {
        return error.what();
    }
}

TEST(OldStyleErrors, TextReadInPiecesGivesTheSameResults) {
    std::vector<std::string> texts;
    for (const auto& bad : kBadInputs) {
        texts.emplace_back(bad.text);
    }
    texts.push_back("// !$*UTF8*$!\r\n{ a = \"x\\U00e9\\Ud83d\\Ude00y\"; b = (1, <0a 0B>, 'q'); "
                    "/* c */ \"d\" = { e = f; }; }\n");
    texts.push_back("\xEF\xBB\xBF{ caf\xC3\xA9 = \"\xE2\x80\xA2\"; }");
    for (const auto& text : texts) {
        const std::string whole = outcome([&] { return readOldStyle(text, "p", {}); });
        for (const std::size_t head : {0, 1, 2}) {
            for (const std::size_t piece : {1, 2, 3, 5}) {
                SCOPED_TRACE(text + " / head " + std::to_string(head) + ", pieces of " +
                             std::to_string(piece));
                const std::size_t cut = std::min(head, text.size());
                TrickleSource rest(std::string_view(text).substr(cut), piece);
                EXPECT_EQ(outcome([&] { return readOldStyle(text.substr(0, cut), rest, "p", {}); }),
                          whole);
            }
        }
    }
}

TEST(OldStyleErrors, TextReadInPiecesBuildsTheSameValues) {
    std::string text = "{ list = (";
    for (int i = 0; i < 5'000; ++i) {
        text += "\"item " + std::to_string(i) + "\", /* note */ id" + std::to_string(i) + ", ";
    }
    text += "); data = <";
    for (int i = 0; i < 3'000; ++i) {
        text += "0123456789abcdef ";
    }
    text += ">; }";
    const Value whole = readOldStyle(text, "p", {});
    for (const std::size_t piece : {1, 7, 1000}) {
        TrickleSource rest(std::string_view(text).substr(10), piece);
        EXPECT_EQ(readOldStyle(text.substr(0, 10), rest, "p", {}), whole) << piece;
    }
}

} // namespace
} // namespace kelvane::plist
