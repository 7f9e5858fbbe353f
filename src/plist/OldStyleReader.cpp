#include "plist/OldStyleReader.h"

#include "plist/ByteSource.h"
#include "plist/KeyPositions.h"
#include "plist/ParseError.h"
#include "plist/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <utility>
#include <vector>

namespace kelvane::plist {

namespace {

enum : std::uint8_t { kUnquoted = 1, kBlank = 2 };

constexpr std::array<std::uint8_t, 256> makeCharClasses() {
    std::array<std::uint8_t, 256> table{};
    for (int c = 'A'; c <= 'Z'; ++c) {
        table[c] = kUnquoted;
    }
    for (int c = 'a'; c <= 'z'; ++c) {
        table[c] = kUnquoted;
    }
    for (int c = '0'; c <= '9'; ++c) {
        table[c] = kUnquoted;
    }
    for (unsigned char c : std::string_view("_$/:.-")) {
        table[c] = kUnquoted;
    }
    for (unsigned char c : std::string_view(" \t\n\r\f\v")) {
        table[c] = kBlank;
    }
    return table;
}
constexpr std::array<std::uint8_t, 256> kCharClasses = makeCharClasses();

bool isUnquoted(char c) {
    return kCharClasses[static_cast<unsigned char>(c)] == kUnquoted;
}
bool isBlank(char c) {
    return kCharClasses[static_cast<unsigned char>(c)] == kBlank;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

std::string hexByte(unsigned char byte) {
    constexpr char digits[] = "0123456789abcdef";
    return std::string("0x") + digits[byte >> 4] + digits[byte & 0xF];
}

// One pass over the bytes with an explicit stack of open containers, so that
// nesting costs heap, not call stack. Finished children wait in two scratch
// stacks (one for array elements, one for dictionary entries) and move into a
// container of exactly their number when it closes, so a project's 100,000s of
// small objects cost no over-allocated vectors and no per-container growth
// (the few containers with thousands of children keep their own; see Frame).
//
// Text may also arrive in blocks (see ByteSource): the parser then works in a
// window of the text, and whenever a token runs into the window's end it
// calls refill(), which drops what lies before the token, reads the next
// block and moves the pointers. Positions for messages count from the start
// of the text through the dropped part.
class OldStyleParser {
public:
    OldStyleParser(std::string_view bytes, const std::string& source, const ReadLimits& limits,
                   KeyPositions* positions)
        : begin_(bytes.data()), p_(bytes.data()), end_(bytes.data() + bytes.size()),
          validEnd_(begin_), cursor_(begin_), source_(source), limits_(limits),
          positions_(positions) {}

    OldStyleParser(std::string head, ByteSource& rest, const std::string& source,
                   const ReadLimits& limits, KeyPositions* positions)
        : buffer_(std::move(head)), input_(&rest), begin_(buffer_.data()), p_(begin_), end_(begin_),
          validEnd_(begin_), cursor_(begin_), source_(source), limits_(limits),
          positions_(positions) {
        // The window starts with the head; make sure it holds a whole BOM.
        const char* keep = begin_;
        refill(keep, buffer_.size());
        while (end_ - begin_ < 3 && refill(keep)) {
        }
    }

    Value parse() {
        if (p_ == end_) {
            fail(p_, "the file is empty");
        }
        if (input_ == nullptr) {
            validate(true);
        }
        if (std::string_view(begin_, static_cast<std::size_t>(end_ - begin_))
                .starts_with("\xEF\xBB\xBF")) {
            p_ += 3;
        }
        skipBlanks();
        if (p_ == end_) {
            return Value(Dictionary());
        }
        while (true) {
            skipBlanks();
            if (p_ == end_) {
                fail(p_, "unexpected end of file");
            }
            bool opened = false;
            Value value = startValue(opened);
            if (opened) {
                continue; // its first child comes next
            }
            // The value is complete: hand it to its container, and close
            // every container that ends right after it.
            while (true) {
                if (frames_.empty()) {
                    skipBlanks();
                    if (p_ != end_) {
                        failExpected("end of file after the root value");
                    }
                    return value;
                }
                Frame& frame = frames_.back();
                if (frame.dictionary) {
                    (frame.owned ? frame.ownEntries : entries_).back().value = std::move(value);
                    skipBlanks();
                    expect(';', "after value");
                    skipBlanks();
                    if (p_ != end_ && *p_ == '}') {
                        ++p_;
                        value = closeDictionary();
                        continue;
                    }
                    beginEntry();
                    break;
                }
                if (frame.owned) {
                    frame.ownElements.push_back(std::move(value));
                } else {
                    elements_.push_back(std::move(value));
                    adoptIfLarge(frame, elements_, frame.ownElements);
                }
                skipBlanks();
                if (p_ != end_ && *p_ == ',') {
                    ++p_;
                    skipBlanks();
                    if (p_ != end_ && *p_ == ')') {
                        ++p_;
                        value = closeArray();
                        continue;
                    }
                    break;
                }
                if (p_ != end_ && *p_ == ')') {
                    ++p_;
                    value = closeArray();
                    continue;
                }
                failExpected("',' or ')' after array element");
            }
        }
    }

private:
    struct Frame {
        bool dictionary;
        std::size_t firstChild; // in entries_ or elements_, until owned
        // Positions are asked for and the filter keeps this dictionary's keys.
        bool recordKeys = false;
        // A container with very many children (the object table) takes them
        // into a vector of its own, which then becomes its storage as it is:
        // moving 100,000s of entries out of the scratch stack would briefly
        // double the largest block of the whole tree.
        bool owned = false;
        std::vector<DictionaryEntry> ownEntries;
        Array ownElements;
    };

    template <typename Child>
    static void adoptIfLarge(Frame& frame, std::vector<Child>& scratch, std::vector<Child>& own) {
        constexpr std::size_t kOwnFrom = 4096;
        if (scratch.size() - frame.firstChild < kOwnFrom) {
            return;
        }
        const auto from = scratch.begin() + static_cast<std::ptrdiff_t>(frame.firstChild);
        own.reserve(2 * kOwnFrom);
        own.assign(std::make_move_iterator(from), std::make_move_iterator(scratch.end()));
        scratch.erase(from, scratch.end());
        frame.owned = true;
    }

    // Moves a line and column over [from, to): "\r\n", "\n" and a lone "\r"
    // end lines, and a column is a character, not a byte. Every byte of a
    // large file passes through here once, so text without a carriage
    // return has its line breaks counted in one pass the compiler
    // vectorises, and its column counted over the last line only.
    void advance(std::size_t& line, std::size_t& column, const char* from, const char* to) const {
        if (std::memchr(from, '\r', static_cast<std::size_t>(to - from)) == nullptr) {
            const auto breaks = static_cast<std::size_t>(std::count(from, to, '\n'));
            const char* lineStart = from;
            if (breaks != 0) {
                lineStart = to;
                while (lineStart[-1] != '\n') {
                    --lineStart;
                }
                line += breaks;
                column = 1;
            }
            column += static_cast<std::size_t>(std::count_if(lineStart, to, [](char c) {
                return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
            }));
            return;
        }
        for (const char* q = from; q < to; ++q) {
            if (*q == '\n' || (*q == '\r' && (q + 1 == end_ || q[1] != '\n'))) {
                ++line;
                column = 1;
            } else if (*q != '\r' && (static_cast<unsigned char>(*q) & 0xC0) != 0x80) {
                ++column;
            }
        }
    }

    void moveCursor(const char* to) {
        advance(cursorLine_, cursorColumn_, cursor_, to);
        cursor_ = to;
    }

    [[noreturn]] void fail(const char* at, const std::string& reason) const {
        std::size_t line = baseLine_;
        std::size_t column = baseColumn_;
        advance(line, column, begin_, at);
        throw ParseError(source_, line, column, reason);
    }

    // Checks the bytes from validEnd_ on, short of a character that the
    // window cuts, unless this is the end of the text.
    void validate(bool toEnd) {
        const char* limit = end_;
        if (!toEnd) {
            const char* lead = end_;
            while (lead > validEnd_ && end_ - lead < 4 &&
                   (static_cast<unsigned char>(lead[-1]) & 0xC0) == 0x80) {
                --lead;
            }
            if (lead > validEnd_ && static_cast<unsigned char>(lead[-1]) >= 0xC0) {
                const auto first = static_cast<unsigned char>(lead[-1]);
                const std::ptrdiff_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
                if (lead - 1 + length > end_) {
                    limit = lead - 1;
                }
            }
        }
        const std::string_view bytes(validEnd_, static_cast<std::size_t>(limit - validEnd_));
        if (const std::size_t bad = utf8::findInvalid(bytes); bad != std::string_view::npos) {
            fail(validEnd_ + bad, "invalid UTF-8 (byte " +
                                      hexByte(static_cast<unsigned char>(validEnd_[bad])) + ")");
        }
        validEnd_ = limit;
    }

    // Reads the next block into the window, dropping the bytes before
    // `keep`. `keep` and p_ move with the bytes; callers move any other
    // pointer of theirs by its distance from `keep`. False at the end of the
    // text, and always for text given whole. `preloaded` bytes already sit
    // in the buffer after end_ (the head, on the first call).
    bool refill(const char*& keep, std::size_t preloaded = 0) {
        if (input_ == nullptr || inputDone_) {
            return false;
        }
        const char* from = std::min(keep, validEnd_);
        if (from > begin_ && from[-1] == '\r') {
            --from; // whether it ends a line depends on the byte after it
        }
        advance(baseLine_, baseColumn_, begin_, from);
        if (positions_ != nullptr && cursor_ < from) {
            moveCursor(from);
        }
        const std::ptrdiff_t cursorAt = positions_ != nullptr ? cursor_ - from : 0;
        const auto keepAt = static_cast<std::size_t>(keep - from);
        const auto pAt = static_cast<std::size_t>(p_ - from);
        const auto validAt = static_cast<std::size_t>(validEnd_ - from);
        const std::size_t kept = static_cast<std::size_t>(end_ - from) + preloaded;
        constexpr std::size_t kBlock = 1 << 18;
        if (from != buffer_.data()) {
            std::memmove(buffer_.data(), from, kept);
        }
        if (buffer_.size() < kept + kBlock) {
            buffer_.resize(kept + kBlock);
        }
        std::size_t count = 0;
        if (preloaded == 0) {
            count = input_->read(buffer_.data() + kept, kBlock);
            inputDone_ = count == 0;
        }
        begin_ = buffer_.data();
        end_ = begin_ + kept + count;
        keep = begin_ + keepAt;
        cursor_ = begin_ + cursorAt;
        p_ = begin_ + pAt;
        validEnd_ = begin_ + validAt;
        validate(inputDone_);
        return count > 0 || preloaded > 0;
    }

    // "expected <what>, saw <token>", or the end-of-file text at the end.
    [[noreturn]] void failExpected(const std::string& what) {
        if (p_ == end_) {
            fail(p_, "unexpected end of file");
        }
        // Show the whole character even where the window cuts it.
        const char* at = p_;
        while (end_ - at < 4 && refill(at)) {
        }
        fail(at, "expected " + what + ", saw " + describe(at));
    }

    std::string describe(const char* at) const {
        if (at == end_) {
            return "end of file";
        }
        const auto c = static_cast<unsigned char>(*at);
        if (c == '\n' || c == '\r') {
            return "a line break";
        }
        if (c < 0x20 || c == 0x7F) {
            return "byte " + hexByte(c);
        }
        std::size_t length = 1;
        if (c >= 0xF0) {
            length = 4;
        } else if (c >= 0xE0) {
            length = 3;
        } else if (c >= 0xC0) {
            length = 2;
        }
        length = std::min(length, static_cast<std::size_t>(end_ - at));
        std::string shown = "'";
        shown.append(at, length).push_back('\'');
        return shown;
    }

    void expect(char c, const char* context) {
        if (p_ == end_ || *p_ != c) {
            failExpected(std::string("'") + c + "' " + context);
        }
        ++p_;
    }

    // Stops at a character that is neither blank nor in a comment, or at the
    // end of the text: after it, p_ == end_ means the text is over.
    void skipBlanks() {
        while (true) {
            if (p_ == end_) {
                const char* here = p_;
                if (!refill(here)) {
                    return;
                }
                continue;
            }
            if (isBlank(*p_)) {
                scanWhile(isBlank);
                continue;
            }
            if (*p_ != '/') {
                return;
            }
            if (p_ + 1 == end_) {
                const char* slash = p_;
                if (!refill(slash)) {
                    return; // a lone '/' at the end: an unquoted string
                }
                continue;
            }
            if (p_[1] == '/') {
                p_ += 2;
                while (true) {
                    scanWhile([](char c) { return c != '\n' && c != '\r'; });
                    const char* here = p_;
                    if (p_ != end_ || !refill(here)) {
                        break;
                    }
                }
            } else if (p_[1] == '*') {
                skipBlockComment();
            } else {
                return; // a '/' that starts an unquoted string
            }
        }
    }

    void skipBlockComment() {
        const char* opening = p_;
        p_ += 2;
        while (true) {
            const void* star = std::memchr(p_, '*', static_cast<std::size_t>(end_ - p_));
            if (star == nullptr) {
                p_ = end_;
                if (!refill(opening)) {
                    fail(opening, "unterminated comment");
                }
                continue;
            }
            p_ = static_cast<const char*>(star) + 1;
            if (p_ == end_ && !refill(opening)) {
                fail(opening, "unterminated comment");
            }
            if (*p_ == '/') {
                ++p_;
                return;
            }
        }
    }

    void open(bool dictionary) {
        if (frames_.size() >= limits_.maxDepth) {
            fail(p_, "nesting deeper than " + std::to_string(limits_.maxDepth) + " levels");
        }
        frames_.push_back(
            {dictionary, dictionary ? entries_.size() : elements_.size(), false, false, {}, {}});
        if (positions_ != nullptr) {
            // The path to the new container: each parent's current key, or
            // "" for an array. Only set here, once per container, so reading
            // a key costs nothing unless its dictionary is wanted.
            const std::size_t depth = frames_.size() - 1;
            keyPath_.resize(depth);
            if (depth > 0) {
                const Frame& parent = frames_[depth - 1];
                if (parent.dictionary) {
                    keyPath_.back() = (parent.owned ? parent.ownEntries : entries_).back().key;
                } else {
                    keyPath_.back().clear();
                }
            }
            frames_.back().recordKeys = dictionary && positions_->wants(keyPath_);
        }
        ++p_;
    }

    Value closeDictionary() {
        if (frames_.back().owned) {
            Value value(Dictionary(std::move(frames_.back().ownEntries)));
            frames_.pop_back();
            return value;
        }
        const std::size_t first = frames_.back().firstChild;
        frames_.pop_back();
        const auto from = entries_.begin() + static_cast<std::ptrdiff_t>(first);
        std::vector<DictionaryEntry> children(std::make_move_iterator(from),
                                              std::make_move_iterator(entries_.end()));
        entries_.erase(from, entries_.end());
        return Value(Dictionary(std::move(children)));
    }

    Value closeArray() {
        if (frames_.back().owned) {
            Value value(std::move(frames_.back().ownElements));
            frames_.pop_back();
            return value;
        }
        const std::size_t first = frames_.back().firstChild;
        frames_.pop_back();
        const auto from = elements_.begin() + static_cast<std::ptrdiff_t>(first);
        Array children(std::make_move_iterator(from), std::make_move_iterator(elements_.end()));
        elements_.erase(from, elements_.end());
        return Value(std::move(children));
    }

    // At a key (blanks skipped): reads it and the '=' after it.
    void beginEntry() {
        if (p_ == end_) {
            fail(p_, "unexpected end of file");
        }
        const bool recordKey = frames_.back().recordKeys;
        TextPosition keyAt;
        if (recordKey) {
            moveCursor(p_);
            keyAt = {cursorLine_, cursorColumn_};
        }
        std::string key;
        if (*p_ == '"' || *p_ == '\'') {
            key = readQuoted();
        } else if (isUnquoted(*p_)) {
            key = readUnquoted();
        } else {
            failExpected("a key or '}'");
        }
        if (recordKey) {
            positions_->record(keyPath_, frames_.size() - 1, key, keyAt);
        }
        Frame& frame = frames_.back();
        if (frame.owned) {
            frame.ownEntries.push_back({std::move(key), Value()});
        } else {
            entries_.push_back({std::move(key), Value()});
            adoptIfLarge(frame, entries_, frame.ownEntries);
        }
        skipBlanks();
        expect('=', "after key");
    }

    // A scalar, an empty container, or (setting `opened`) a container whose
    // children follow.
    Value startValue(bool& opened) {
        // A value costs as little as two bytes of text ("a,") and tens of
        // bytes in memory, so their number is bounded as in the binary form.
        if (++values_ > limits_.maxValues) {
            fail(p_,
                 "the data expands to more than " + std::to_string(limits_.maxValues) + " values");
        }
        if (*p_ == '{') {
            open(true);
            skipBlanks();
            if (p_ == end_ || *p_ != '}') {
                beginEntry();
                opened = true;
                return Value();
            }
            ++p_;
            return closeDictionary();
        }
        if (*p_ == '(') {
            open(false);
            skipBlanks();
            if (p_ == end_ || *p_ != ')') {
                opened = true;
                return Value();
            }
            ++p_;
            return closeArray();
        }
        return readScalar();
    }

    Value readScalar() {
        if (*p_ == '"' || *p_ == '\'') {
            return Value(readQuoted());
        }
        if (isUnquoted(*p_)) {
            return Value(readUnquoted());
        }
        if (*p_ == '<') {
            return Value(readData());
        }
        failExpected("a value");
    }

    // The scanning loops work on locals: a char read may alias any member,
    // so a loop over p_ itself would store it back on every character.
    template <typename Predicate> void scanWhile(Predicate keepGoing) {
        const char* q = p_;
        const char* const end = end_;
        while (q != end && keepGoing(*q)) {
            ++q;
        }
        p_ = q;
    }

    std::string readUnquoted() {
        const char* start = p_;
        while (true) {
            scanWhile(isUnquoted);
            if (p_ != end_ || !refill(start)) {
                return std::string(start, p_);
            }
        }
    }

    std::string readQuoted() {
        const char quote = *p_;
        const char* opening = p_++;
        const char* run = p_;
        std::string text;
        while (true) {
            scanWhile([quote](char c) { return c != quote && c != '\\'; });
            if (p_ == end_) {
                const auto runAt = run - opening;
                if (!refill(opening)) {
                    fail(opening, "unterminated string");
                }
                run = opening + runAt;
                continue;
            }
            text.append(run, p_);
            if (*p_ == quote) {
                ++p_;
                return text;
            }
            readEscape(text, opening);
            run = p_;
        }
    }

    // Up to `maxDigits` digits of `base` (8 or 16); -1 when there is none.
    long readNumber(int base, int maxDigits) {
        long value = -1;
        for (int i = 0; i < maxDigits && p_ != end_; ++i) {
            const int digit = hexDigit(*p_);
            if (digit < 0 || digit >= base) {
                break;
            }
            value = (value < 0 ? 0 : value * base) + digit;
            ++p_;
        }
        return value;
    }

    void readEscape(std::string& text, const char*& opening) {
        // The longest escape, a surrogate pair, is 12 bytes.
        while (end_ - p_ < 12 && refill(opening)) {
        }
        const char* escape = p_++;
        if (p_ == end_) {
            fail(opening, "unterminated string");
        }
        const char c = *p_;
        switch (c) {
        case 'n':
            text.push_back('\n');
            break;
        case 't':
            text.push_back('\t');
            break;
        case 'r':
            text.push_back('\r');
            break;
        case 'b':
            text.push_back('\b');
            break;
        case 'f':
            text.push_back('\f');
            break;
        case 'v':
            text.push_back('\v');
            break;
        case 'a':
            text.push_back('\a');
            break;
        case 'U': {
            ++p_;
            const long unit = readNumber(16, 4);
            if (unit < 0) {
                fail(escape, "expected hexadecimal digits after \\U");
            }
            auto codePoint = static_cast<char32_t>(unit);
            if (utf8::isHighSurrogate(codePoint)) {
                const char* next = p_;
                long low = -1;
                if (end_ - p_ >= 2 && p_[0] == '\\' && p_[1] == 'U') {
                    p_ += 2;
                    low = readNumber(16, 4);
                }
                if (low < 0 || !utf8::isLowSurrogate(static_cast<char32_t>(low))) {
                    p_ = next;
                    fail(escape, "unpaired UTF-16 surrogate in \\U escape");
                }
                codePoint = utf8::combineSurrogates(codePoint, static_cast<char32_t>(low));
            } else if (utf8::isLowSurrogate(codePoint)) {
                fail(escape, "unpaired UTF-16 surrogate in \\U escape");
            }
            utf8::append(text, codePoint);
            return;
        }
        default:
            if (c >= '0' && c <= '7') {
                utf8::append(text, static_cast<char32_t>(readNumber(8, 3)));
                return;
            }
            // Any other character stands for itself, as in Apple's reader.
            text.push_back(c);
            break;
        }
        ++p_;
    }

    Data readData() {
        const char* opening = p_++;
        Data data;
        int high = -1;
        while (true) {
            while (p_ != end_ && isBlank(*p_)) {
                ++p_;
            }
            if (p_ == end_) {
                if (!refill(opening)) {
                    fail(opening, "unterminated data");
                }
                continue;
            }
            if (*p_ == '>') {
                if (high >= 0) {
                    fail(p_, "odd number of hexadecimal digits in data");
                }
                ++p_;
                return data;
            }
            const int digit = hexDigit(*p_);
            if (digit < 0) {
                failExpected("a hexadecimal digit or '>' in data");
            }
            if (high < 0) {
                high = digit;
            } else {
                data.push_back(static_cast<std::uint8_t>(high << 4 | digit));
                high = -1;
            }
            ++p_;
        }
    }

    std::string buffer_; // the window, when the text arrives in blocks
    ByteSource* input_ = nullptr;
    bool inputDone_ = false;
    const char* begin_;
    const char* p_;
    const char* end_;
    const char* validEnd_; // the bytes before it are known to be UTF-8
    std::size_t values_ = 0;
    std::size_t baseLine_ = 1; // where begin_ is in the whole text
    std::size_t baseColumn_ = 1;
    // Only when positions are asked for: where cursor_ stands in the whole
    // text, and the keys that lead to the innermost container opened.
    const char* cursor_;
    std::size_t cursorLine_ = 1;
    std::size_t cursorColumn_ = 1;
    KeyPositions::Path keyPath_;
    const std::string& source_;
    const ReadLimits& limits_;
    KeyPositions* positions_;
    std::vector<Frame> frames_;
    std::vector<DictionaryEntry> entries_;
    Array elements_;
};

} // namespace

Value readOldStyle(std::string_view bytes, const std::string& source, const ReadLimits& limits,
                   KeyPositions* positions) {
    return OldStyleParser(bytes, source, limits, positions).parse();
}

Value readOldStyle(std::string head, ByteSource& rest, const std::string& source,
                   const ReadLimits& limits, KeyPositions* positions) {
    return OldStyleParser(std::move(head), rest, source, limits, positions).parse();
}

} // namespace kelvane::plist
