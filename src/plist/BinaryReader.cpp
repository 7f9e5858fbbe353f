#include "plist/BinaryReader.h"

#include "plist/ParseError.h"
#include "plist/Utf8.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

namespace kelvane::plist {

namespace {

constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kTrailerSize = 32;

// Below this, a file may expand to this many values whatever its size: small
// files with a few shared strings are normal. Above it, the bound grows with
// the file, so a tiny file that references one object millions of times is
// refused before anything is built.
constexpr std::uint64_t kMinValueBudget = 1'000'000;
constexpr std::uint64_t kValuesPerByte = 64;

enum Type : std::uint8_t {
    kSingleton = 0x0,
    kInteger = 0x1,
    kReal = 0x2,
    kDate = 0x3,
    kData = 0x4,
    kAsciiString = 0x5,
    kUtf16String = 0x6,
    kUid = 0x8,
    kArray = 0xA,
    kOrderedSet = 0xB,
    kSet = 0xC,
    kDictionary = 0xD,
};

struct ObjectHeader {
    std::uint8_t type;
    std::uint8_t info;   // low nibble of the marker
    std::uint64_t count; // elements, bytes or code units, for the sized types
    std::size_t body;    // where the payload starts
};

// Every read goes through here, and every number taken from the file is
// checked against the file's size before it is used as an offset or a count.
class BinaryPlistReader {
public:
    BinaryPlistReader(std::string_view bytes, const std::string& source, const ReadLimits& limits)
        : bytes_(bytes), source_(source), limits_(limits) {}

    Value read() {
        if (bytes_.size() < kHeaderSize + kTrailerSize + 1) {
            fail("too short for a binary property list (" + std::to_string(bytes_.size()) +
                 " bytes)");
        }
        const std::size_t trailer = bytes_.size() - kTrailerSize;
        offsetSize_ = byteAt(trailer + 6);
        refSize_ = byteAt(trailer + 7);
        objectCount_ = readUnsigned(trailer + 8, 8);
        const std::uint64_t top = readUnsigned(trailer + 16, 8);
        tableOffset_ = readUnsigned(trailer + 24, 8);
        if (offsetSize_ < 1 || offsetSize_ > 8) {
            fail("offset size " + std::to_string(offsetSize_) + " is not between 1 and 8");
        }
        if (refSize_ < 1 || refSize_ > 8) {
            fail("object reference size " + std::to_string(refSize_) + " is not between 1 and 8");
        }
        if (tableOffset_ <= kHeaderSize || tableOffset_ >= trailer) {
            fail("offset table position " + std::to_string(tableOffset_) + " out of range");
        }
        if (objectCount_ == 0 || objectCount_ > (trailer - tableOffset_) / offsetSize_) {
            fail("object count " + std::to_string(objectCount_) + " does not fit the offset table");
        }
        // Objects lie between the header and the offset table, as the
        // format's writers put them.
        objectsEnd_ = static_cast<std::size_t>(tableOffset_);
        if (top >= objectCount_) {
            fail("top object " + std::to_string(top) + " out of range");
        }
        const std::uint64_t budget = std::min<std::uint64_t>(
            limits_.maxValues,
            std::max<std::uint64_t>(kMinValueBudget, kValuesPerByte * bytes_.size()));
        valueBudget_ = budget;
        memo_.assign(static_cast<std::size_t>(objectCount_), Memo{});
        count(top, 1);
        return build(top);
    }

private:
    struct Memo {
        enum State : std::uint8_t { unvisited, visiting, done };
        State state = unvisited;
        std::uint32_t height = 0; // containers on the longest path down, itself included
        std::uint64_t values = 0; // values it expands to, itself included
    };

    [[noreturn]] void fail(const std::string& reason) const { throw ParseError(source_, reason); }

    std::uint8_t byteAt(std::size_t position) const {
        return static_cast<std::uint8_t>(bytes_[position]);
    }

    std::uint64_t readUnsigned(std::size_t position, std::size_t size) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            value = value << 8 | byteAt(position + i);
        }
        return value;
    }

    // Checks that [position, position + size) lies in the object area.
    void require(std::size_t position, std::uint64_t size, std::uint64_t object) const {
        if (position > objectsEnd_ || size > objectsEnd_ - position) {
            fail("object " + std::to_string(object) + " runs past the object area");
        }
    }

    std::size_t offsetOf(std::uint64_t object) const {
        const std::uint64_t offset = readUnsigned(
            static_cast<std::size_t>(tableOffset_ + object * offsetSize_), offsetSize_);
        if (offset < kHeaderSize || offset >= objectsEnd_) {
            fail("offset " + std::to_string(offset) + " of object " + std::to_string(object) +
                 " out of range");
        }
        return static_cast<std::size_t>(offset);
    }

    std::uint64_t referenceAt(std::size_t position) const {
        const std::uint64_t reference = readUnsigned(position, refSize_);
        if (reference >= objectCount_) {
            fail("object reference " + std::to_string(reference) + " out of range");
        }
        return reference;
    }

    ObjectHeader header(std::uint64_t object) const {
        std::size_t position = offsetOf(object);
        const std::uint8_t marker = byteAt(position++);
        ObjectHeader result{static_cast<std::uint8_t>(marker >> 4),
                            static_cast<std::uint8_t>(marker & 0xF), 0, position};
        switch (result.type) {
        case kData:
        case kAsciiString:
        case kUtf16String:
        case kArray:
        case kOrderedSet:
        case kSet:
        case kDictionary:
            break;
        default:
            return result;
        }
        result.count = result.info;
        if (result.info == 0xF) {
            // The count follows as an integer object of its own.
            require(position, 1, object);
            const std::uint8_t countMarker = byteAt(position++);
            const unsigned size = 1u << (countMarker & 0xF);
            if ((countMarker >> 4) != kInteger || size > 8) {
                fail("object " + std::to_string(object) + " has a malformed length");
            }
            require(position, size, object);
            result.count = readUnsigned(position, size);
            position += size;
        }
        result.body = position;
        std::uint64_t unit = 1;
        if (result.type == kUtf16String) {
            unit = 2;
        } else if (result.type == kDictionary) {
            unit = 2u * refSize_;
        } else if (result.type >= kArray) {
            unit = refSize_;
        }
        if (result.count > (objectsEnd_ - position) / unit) {
            fail("object " + std::to_string(object) + " runs past the object area");
        }
        return result;
    }

    static bool isContainer(std::uint8_t type) {
        return type == kArray || type == kOrderedSet || type == kSet || type == kDictionary;
    }

    // First pass: how many values the object expands to and how deep it
    // nests, memoised per object, so a reference cycle, a nesting too deep
    // and an expansion too large are all refused before a value is built.
    const Memo& count(std::uint64_t object, std::size_t depth) {
        Memo& memo = memo_[static_cast<std::size_t>(object)];
        if (memo.state == Memo::visiting) {
            fail("object " + std::to_string(object) + " contains itself");
        }
        if (memo.state == Memo::unvisited) {
            memo.state = Memo::visiting;
            const ObjectHeader head = header(object);
            std::uint64_t values = head.type == kUid ? 2 : 1;
            std::uint32_t height = 0;
            if (isContainer(head.type)) {
                if (depth > limits_.maxDepth) {
                    failTooDeep();
                }
                const std::uint64_t references =
                    head.type == kDictionary ? 2 * head.count : head.count;
                for (std::uint64_t i = 0; i < references; ++i) {
                    const std::uint64_t child = referenceAt(head.body + i * refSize_);
                    if (head.type == kDictionary && i < head.count) {
                        const std::uint8_t keyType = header(child).type;
                        if (keyType != kAsciiString && keyType != kUtf16String) {
                            fail("dictionary key " + std::to_string(child) + " in object " +
                                 std::to_string(object) + " is not a string");
                        }
                    }
                    const Memo& inner = count(child, depth + 1);
                    values += inner.values;
                    height = std::max(height, inner.height);
                    if (values > valueBudget_) {
                        failTooLarge();
                    }
                }
                ++height;
            }
            memo = {Memo::done, height, values}; // memo_ never grows, so `memo` is still valid
            return memo;
        }
        if (depth - 1 + memo.height > limits_.maxDepth) {
            failTooDeep();
        }
        return memo;
    }

    [[noreturn]] void failTooDeep() const {
        fail("nesting deeper than " + std::to_string(limits_.maxDepth) + " levels");
    }
    [[noreturn]] void failTooLarge() const {
        fail("the data expands to more than " + std::to_string(valueBudget_) + " values");
    }

    std::int64_t readInteger(std::uint64_t object, std::size_t position, unsigned info) const {
        if (info > 4) {
            fail("integer object " + std::to_string(object) + " has an unsupported size");
        }
        const std::size_t size = std::size_t{1} << info;
        require(position, size, object);
        if (size < 8) {
            return static_cast<std::int64_t>(readUnsigned(position, size));
        }
        if (size == 8) {
            return static_cast<std::int64_t>(readUnsigned(position, 8));
        }
        // 16 bytes: the writer's way of storing values past the signed 64-bit
        // range; accept what still fits.
        const std::uint64_t high = readUnsigned(position, 8);
        const std::uint64_t low = readUnsigned(position + 8, 8);
        const auto value = static_cast<std::int64_t>(low);
        if ((high == 0 && value >= 0) || (high == ~std::uint64_t{0} && value < 0)) {
            return value;
        }
        fail("integer object " + std::to_string(object) + " does not fit in 64 bits");
    }

    double readReal(std::uint64_t object, std::size_t position, unsigned info) const {
        if (info == 2) {
            require(position, 4, object);
            const auto bits = static_cast<std::uint32_t>(readUnsigned(position, 4));
            return static_cast<double>(std::bit_cast<float>(bits));
        }
        if (info == 3) {
            require(position, 8, object);
            return std::bit_cast<double>(readUnsigned(position, 8));
        }
        fail("real object " + std::to_string(object) + " has an unsupported size");
    }

    std::string readString(std::uint64_t object, const ObjectHeader& head) const {
        const std::size_t size = static_cast<std::size_t>(head.count);
        if (head.type == kAsciiString) {
            std::string text(bytes_.substr(head.body, size));
            for (const char c : text) {
                if (static_cast<unsigned char>(c) >= 0x80) {
                    fail("string object " + std::to_string(object) + " is not ASCII");
                }
            }
            return text;
        }
        std::string text;
        text.reserve(size);
        for (std::size_t i = 0; i < size; ++i) {
            char32_t unit = static_cast<char32_t>(readUnsigned(head.body + 2 * i, 2));
            if (utf8::isHighSurrogate(unit) && i + 1 < size) {
                const auto low = static_cast<char32_t>(readUnsigned(head.body + 2 * i + 2, 2));
                if (utf8::isLowSurrogate(low)) {
                    unit = utf8::combineSurrogates(unit, low);
                    ++i;
                }
            }
            if (utf8::isHighSurrogate(unit) || utf8::isLowSurrogate(unit)) {
                fail("string object " + std::to_string(object) +
                     " holds an unpaired UTF-16 surrogate");
            }
            utf8::append(text, unit);
        }
        return text;
    }

    // Second pass: count() has vouched for every reference, the depth and the
    // total size, so recursion here is bounded.
    Value build(std::uint64_t object) const {
        const ObjectHeader head = header(object);
        switch (head.type) {
        case kSingleton:
            if (head.info == 0x8 || head.info == 0x9) {
                return Value(head.info == 0x9);
            }
            if (head.info == 0x0) {
                fail("object " + std::to_string(object) + " is null, which property lists " +
                     "cannot hold");
            }
            break;
        case kInteger:
            return Value(readInteger(object, head.body, head.info));
        case kReal:
            return Value(readReal(object, head.body, head.info));
        case kDate:
            if (head.info != 3) {
                break;
            }
            return Value(Date{readReal(object, head.body, 3)});
        case kData: {
            const auto* first = reinterpret_cast<const std::uint8_t*>(bytes_.data() + head.body);
            return Value(Data(first, first + head.count));
        }
        case kAsciiString:
        case kUtf16String:
            return Value(readString(object, head));
        case kUid: {
            const std::size_t size = head.info + 1u;
            if (size > 8) {
                fail("UID object " + std::to_string(object) + " has an unsupported size");
            }
            require(head.body, size, object);
            // The form the XML writer gives a UID.
            std::vector<DictionaryEntry> entries;
            entries.push_back(
                {"CF$UID", Value(static_cast<std::int64_t>(readUnsigned(head.body, size)))});
            return Value(Dictionary(std::move(entries)));
        }
        case kArray:
        case kOrderedSet:
        case kSet: {
            Array elements;
            elements.reserve(static_cast<std::size_t>(head.count));
            for (std::uint64_t i = 0; i < head.count; ++i) {
                elements.push_back(build(referenceAt(head.body + i * refSize_)));
            }
            return Value(std::move(elements));
        }
        case kDictionary: {
            std::vector<DictionaryEntry> entries;
            entries.reserve(static_cast<std::size_t>(head.count));
            const std::size_t values = head.body + static_cast<std::size_t>(head.count) * refSize_;
            for (std::uint64_t i = 0; i < head.count; ++i) {
                const std::uint64_t key = referenceAt(head.body + i * refSize_);
                entries.push_back(
                    {readString(key, header(key)), build(referenceAt(values + i * refSize_))});
            }
            return Value(Dictionary(std::move(entries)));
        }
        default:
            break;
        }
        char marker[8];
        std::snprintf(marker, sizeof marker, "0x%x%x", head.type, head.info);
        fail("object " + std::to_string(object) + " has the unknown type " + marker);
    }

    std::string_view bytes_;
    const std::string& source_;
    const ReadLimits& limits_;
    std::size_t objectsEnd_ = 0;
    unsigned offsetSize_ = 0;
    unsigned refSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t tableOffset_ = 0;
    std::uint64_t valueBudget_ = 0;
    std::vector<Memo> memo_;
};

} // namespace

Value readBinary(std::string_view bytes, const std::string& source, const ReadLimits& limits) {
    return BinaryPlistReader(bytes, source, limits).read();
}

} // namespace kelvane::plist
