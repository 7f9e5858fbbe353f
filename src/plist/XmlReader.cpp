#include "plist/XmlReader.h"

#include "plist/Base64.h"
#include "plist/ByteSource.h"
#include "plist/IsoDate.h"
#include "plist/ParseError.h"

#include <expat.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <locale>
#include <memory>
#include <optional>
#include <sstream>
#include <vector>

namespace kelvane::plist {

namespace {

enum class Element { plist, dict, array, key, string, integer, real, date, data, yes, no };

std::optional<Element> elementNamed(std::string_view name) {
    static constexpr std::pair<std::string_view, Element> kElements[] = {
        {"plist", Element::plist}, {"dict", Element::dict},     {"array", Element::array},
        {"key", Element::key},     {"string", Element::string}, {"integer", Element::integer},
        {"real", Element::real},   {"date", Element::date},     {"data", Element::data},
        {"true", Element::yes},    {"false", Element::no},
    };
    for (const auto& [elementName, element] : kElements) {
        if (elementName == name) {
            return element;
        }
    }
    return std::nullopt;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// Decimal or 0x-hexadecimal, with an optional sign, within 64-bit signed range.
std::optional<std::int64_t> parseInteger(std::string_view text) {
    bool negative = false;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint64_t magnitude = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    constexpr auto kMax = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (negative) {
        if (magnitude > kMax + 1) {
            return std::nullopt;
        }
        return magnitude == kMax + 1 ? std::numeric_limits<std::int64_t>::min()
                                     : -static_cast<std::int64_t>(magnitude);
    }
    if (magnitude > kMax) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(magnitude);
}

std::optional<double> parseReal(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    if (lower == "nan" || lower == "+nan" || lower == "-nan") {
        return std::numeric_limits<double>::quiet_NaN();
    }
    for (const char* infinity : {"inf", "+inf", "infinity", "+infinity"}) {
        if (lower == infinity) {
            return std::numeric_limits<double>::infinity();
        }
    }
    if (lower == "-inf" || lower == "-infinity") {
        return -std::numeric_limits<double>::infinity();
    }
    if (text.empty() || isBlank(text.front())) {
        return std::nullopt;
    }
    // A stream in the classic locale, because the desktop application may
    // switch the C locale to one whose decimal point is a comma.
    std::istringstream in(lower);
    in.imbue(std::locale::classic());
    double value = 0;
    in >> value;
    if (in.fail() || in.peek() != std::char_traits<char>::eof()) {
        return std::nullopt;
    }
    return value;
}

std::string quoted(std::string_view text) {
    constexpr std::size_t kShown = 40;
    std::string shown = "'";
    shown.append(text.substr(0, kShown)).append(text.size() > kShown ? "...'" : "'");
    return shown;
}

// Builds values from expat's events. Expat is C: nothing may be thrown
// through it, so a handler that finds a fault records it and stops the
// parser, and read() throws once XML_Parse has returned.
class XmlPlistBuilder {
public:
    XmlPlistBuilder(const std::string& source, const ReadLimits& limits, KeyPositions* positions)
        : source_(source), limits_(limits), positions_(positions),
          parser_(XML_ParserCreate(nullptr), &XML_ParserFree) {}

    Value read(std::string_view bytes) {
        prepare();
        feed(bytes, true);
        return finish();
    }

    Value read(std::string_view head, ByteSource& rest) {
        prepare();
        feed(head, false);
        std::vector<char> buffer(1 << 16);
        while (const std::size_t count = rest.read(buffer.data(), buffer.size())) {
            feed(std::string_view(buffer.data(), count), false);
        }
        feed({}, true);
        return finish();
    }

private:
    void prepare() {
        if (!parser_) {
            throw ParseError(source_, "cannot start the XML parser");
        }
        XML_Parser parser = parser_.get();
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, &onStart, &onEnd);
        XML_SetCharacterDataHandler(parser, &onText);
        // Entities are how "billion laughs" documents grow; property lists
        // never declare any, so the first declaration ends the read.
        XML_SetEntityDeclHandler(parser, &onEntityDeclaration);
    }

    void feed(std::string_view bytes, bool last) {
        XML_Parser parser = parser_.get();
        constexpr std::size_t kChunk = INT_MAX / 2;
        std::size_t offset = 0;
        do {
            const std::size_t length = std::min(kChunk, bytes.size() - offset);
            const bool final = last && offset + length == bytes.size();
            if (XML_Parse(parser, bytes.data() + offset, static_cast<int>(length),
                          final ? XML_TRUE : XML_FALSE) == XML_STATUS_ERROR) {
                if (failure_) {
                    throw ParseError(source_, failure_->line, failure_->column, failure_->reason);
                }
                throw ParseError(source_, XML_GetCurrentLineNumber(parser),
                                 XML_GetCurrentColumnNumber(parser) + 1,
                                 XML_ErrorString(XML_GetErrorCode(parser)));
            }
            offset += length;
        } while (offset < bytes.size());
    }

    Value finish() {
        if (!root_) {
            throw ParseError(source_, XML_GetCurrentLineNumber(parser_.get()),
                             XML_GetCurrentColumnNumber(parser_.get()) + 1,
                             "the document holds no property-list value");
        }
        return std::move(*root_);
    }

    struct Frame {
        Element element; // plist, dict or array
        std::size_t firstChild;
        bool keyPending = false;
        bool recordKeys = false; // positions are asked for and kept here
    };
    struct Failure {
        std::size_t line;
        std::size_t column;
        std::string reason;
    };
    struct Position {
        std::size_t line = 0;
        std::size_t column = 0;
    };

    Position here() const {
        return {XML_GetCurrentLineNumber(parser_.get()),
                XML_GetCurrentColumnNumber(parser_.get()) + 1};
    }

    void stop(const std::string& reason, Position at) {
        if (!failure_) {
            failure_ = Failure{at.line, at.column, reason};
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }
    void stop(const std::string& reason) { stop(reason, here()); }

    template <typename Body> static void guarded(void* self, Body body) {
        auto* builder = static_cast<XmlPlistBuilder*>(self);
        if (builder->failure_) {
            return;
        }
        try {
            body(*builder);
        } catch (const std::exception& error) {
            builder->stop(error.what());
        }
    }

    static void XMLCALL onStart(void* self, const XML_Char* name, const XML_Char**) {
        guarded(self, [name](XmlPlistBuilder& b) { b.start(name); });
    }
    static void XMLCALL onEnd(void* self, const XML_Char*) {
        guarded(self, [](XmlPlistBuilder& b) { b.end(); });
    }
    static void XMLCALL onText(void* self, const XML_Char* text, int length) {
        guarded(self, [text, length](XmlPlistBuilder& b) {
            b.text(std::string_view(text, static_cast<std::size_t>(length)));
        });
    }
    static void XMLCALL onEntityDeclaration(void* self, const XML_Char*, int, const XML_Char*, int,
                                            const XML_Char*, const XML_Char*, const XML_Char*,
                                            const XML_Char*) {
        guarded(self, [](XmlPlistBuilder& b) { b.stop("entity declarations are not allowed"); });
    }

    void start(std::string_view name) {
        if (scalar_) {
            stop("unexpected <" + std::string(name) + "> inside <" + scalarName_ + ">");
            return;
        }
        const std::optional<Element> element = elementNamed(name);
        if (!element) {
            stop("unknown element <" + std::string(name) + ">");
            return;
        }
        Frame* parent = frames_.empty() ? nullptr : &frames_.back();
        if (*element == Element::plist) {
            if (parent != nullptr || root_) {
                stop("unexpected <plist> inside another element");
                return;
            }
            frames_.push_back({Element::plist, elements_.size()});
            return;
        }
        if (*element == Element::key) {
            if (parent == nullptr || parent->element != Element::dict) {
                stop("<key> outside <dict>");
                return;
            }
            if (parent->keyPending) {
                stop("key " + quoted(entries_.back().key) + " has no value");
                return;
            }
        } else if (parent != nullptr) {
            if (parent->element == Element::dict && !parent->keyPending) {
                stop("expected <key> in <dict>, saw <" + std::string(name) + ">");
                return;
            }
            if (parent->element == Element::plist && elements_.size() > parent->firstChild) {
                stop("a second value <" + std::string(name) + "> in <plist>");
                return;
            }
        }
        // Every element but <key> and <plist> becomes a value; their number is
        // bounded as in the other forms, so a huge file cannot exhaust memory.
        if (*element != Element::key && *element != Element::plist &&
            ++values_ > limits_.maxValues) {
            stop("the data expands to more than " + std::to_string(limits_.maxValues) + " values");
            return;
        }
        if (*element == Element::dict || *element == Element::array) {
            if (frames_.size() >= limits_.maxDepth) {
                stop("nesting deeper than " + std::to_string(limits_.maxDepth) + " levels");
                return;
            }
            // The push may move the frames; remember what the parent is first.
            const bool inDictionary = parent != nullptr && parent->element == Element::dict;
            frames_.push_back(
                {*element, *element == Element::dict ? entries_.size() : elements_.size()});
            if (positions_ != nullptr) {
                // The path to the new container: each parent's pending key,
                // or "" for an array.
                const std::size_t depth = containerDepth() - 1;
                keyPath_.resize(depth);
                if (depth > 0) {
                    keyPath_.back() = inDictionary ? entries_.back().key : "";
                }
                frames_.back().recordKeys =
                    *element == Element::dict && positions_->wants(keyPath_);
            }
            return;
        }
        scalar_ = element;
        scalarName_ = std::string(name);
        scalarStart_ = here();
        text_.clear();
    }

    void text(std::string_view text) {
        if (scalar_) {
            text_.append(text);
        } else if (!trimmed(text).empty()) {
            stop("unexpected text " + quoted(trimmed(text)));
        }
    }

    void end() {
        if (scalar_) {
            const Element element = *scalar_;
            scalar_.reset();
            if (element == Element::key) {
                if (frames_.back().recordKeys) {
                    positions_->record(keyPath_, containerDepth() - 1, text_,
                                       {scalarStart_.line, scalarStart_.column});
                }
                entries_.push_back({std::move(text_), Value()});
                frames_.back().keyPending = true;
                text_ = std::string();
                return;
            }
            if (std::optional<Value> value = scalarValue(element)) {
                deliver(std::move(*value));
            }
            return;
        }
        const Frame frame = frames_.back();
        frames_.pop_back();
        if (frame.element == Element::dict) {
            if (frame.keyPending) {
                stop("key " + quoted(entries_.back().key) + " has no value");
                return;
            }
            const auto from = entries_.begin() + static_cast<std::ptrdiff_t>(frame.firstChild);
            std::vector<DictionaryEntry> children(std::make_move_iterator(from),
                                                  std::make_move_iterator(entries_.end()));
            entries_.erase(from, entries_.end());
            deliver(Value(Dictionary(std::move(children))));
            return;
        }
        const auto from = elements_.begin() + static_cast<std::ptrdiff_t>(frame.firstChild);
        Array children(std::make_move_iterator(from), std::make_move_iterator(elements_.end()));
        elements_.erase(from, elements_.end());
        if (frame.element == Element::array) {
            deliver(Value(std::move(children)));
        } else if (children.empty()) {
            stop("<plist> holds no value");
        } else {
            root_ = std::move(children.front());
        }
    }

    std::optional<Value> scalarValue(Element element) {
        const std::string_view content = trimmed(text_);
        switch (element) {
        case Element::string:
            return Value(std::move(text_));
        case Element::integer:
            if (const auto integer = parseInteger(content)) {
                return Value(*integer);
            }
            stop("invalid integer " + quoted(content), scalarStart_);
            return std::nullopt;
        case Element::real:
            if (const auto real = parseReal(content)) {
                return Value(*real);
            }
            stop("invalid real " + quoted(content), scalarStart_);
            return std::nullopt;
        case Element::date:
            if (const auto date = parseIsoDate(content)) {
                return Value(*date);
            }
            stop("invalid date " + quoted(content), scalarStart_);
            return std::nullopt;
        case Element::data:
            if (auto data = decodeBase64(text_)) {
                return Value(std::move(*data));
            }
            stop("invalid base64 in <data>", scalarStart_);
            return std::nullopt;
        case Element::yes:
        case Element::no:
            if (!content.empty()) {
                stop("unexpected text " + quoted(content) + " in <" + scalarName_ + ">",
                     scalarStart_);
                return std::nullopt;
            }
            return Value(element == Element::yes);
        default:
            return std::nullopt; // containers and keys never get here
        }
    }

    // Dictionaries and arrays around the current element; <plist> is none.
    std::size_t containerDepth() const {
        return frames_.size() - (frames_.front().element == Element::plist ? 1 : 0);
    }

    void deliver(Value value) {
        if (frames_.empty()) {
            root_ = std::move(value);
            return;
        }
        Frame& parent = frames_.back();
        if (parent.element == Element::dict) {
            entries_.back().value = std::move(value);
            parent.keyPending = false;
        } else {
            elements_.push_back(std::move(value));
        }
    }

    const std::string& source_;
    const ReadLimits& limits_;
    KeyPositions* positions_;
    KeyPositions::Path keyPath_; // only when positions are asked for
    std::size_t values_ = 0;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser_;
    std::optional<Failure> failure_;
    std::vector<Frame> frames_;
    std::vector<DictionaryEntry> entries_;
    Array elements_;
    std::optional<Element> scalar_;
    std::string scalarName_;
    Position scalarStart_;
    std::string text_;
    std::optional<Value> root_;
};

} // namespace

Value readXml(std::string_view bytes, const std::string& source, const ReadLimits& limits,
              KeyPositions* positions) {
    return XmlPlistBuilder(source, limits, positions).read(bytes);
}

Value readXml(std::string_view head, ByteSource& rest, const std::string& source,
              const ReadLimits& limits, KeyPositions* positions) {
    return XmlPlistBuilder(source, limits, positions).read(head, rest);
}

} // namespace kelvane::plist
