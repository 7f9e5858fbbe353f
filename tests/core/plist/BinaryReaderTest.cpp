// The binary form: every object type, and files crafted byte by byte to be
// wrong in one way each.
#include "plist/BinaryReader.h"
#include "PlistWriters.h"
#include "plist/ParseError.h"

#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <cmath>

namespace kelvane::plist {
namespace {

using testing::assembleBinary;
using testing::bigEndian;
using testing::marker;

Value read(std::string_view bytes, const ReadLimits& limits = {}) {
    return readBinary(bytes, "App.entitlements", limits);
}

std::string ascii(std::string_view text) {
    return marker(0x5, text.size()) + std::string(text);
}

std::string real8(double value) {
    return "\x23" + bigEndian(std::bit_cast<std::uint64_t>(value), 8);
}

TEST(BinaryReader, ReadsScalarsOfEveryWidth) {
    const struct {
        std::string object;
        Value expected;
    } cases[] = {
        {"\x09", Value(true)},
        {"\x08", Value(false)},
        {"\x10\x7F", Value(std::int64_t{127})},
        {"\x10\xFF", Value(std::int64_t{255})},
        {std::string("\x11\x01\x00", 3), Value(std::int64_t{256})},
        {"\x12" + bigEndian(0xFFFFFFFF, 4), Value(std::int64_t{0xFFFFFFFF})},
        {"\x13" + bigEndian(static_cast<std::uint64_t>(-2), 8), Value(std::int64_t{-2})},
        {"\x14" + bigEndian(0, 8) + bigEndian(5, 8), Value(std::int64_t{5})},
        {"\x14" + bigEndian(~0ULL, 8) + bigEndian(static_cast<std::uint64_t>(-5), 8),
         Value(std::int64_t{-5})},
        {"\x22" + bigEndian(std::bit_cast<std::uint32_t>(1.5f), 4), Value(1.5)},
        {real8(-0.25), Value(-0.25)},
        {"\x33" + bigEndian(std::bit_cast<std::uint64_t>(736'257'600.0), 8),
         Value(Date{736'257'600.0})},
        {marker(0x4, 3) + std::string("\x00\x01\xFF", 3), Value(Data{0x00, 0x01, 0xFF})},
        {ascii(""), Value("")},
        {ascii("group.com.example"), Value("group.com.example")},
        {ascii(std::string(40, 'x')), Value(std::string(40, 'x'))},
        // UTF-16 big endian, a surrogate pair included.
        {marker(0x6, 4) + std::string("\x00\xE9\x20\x22\xD8\x3D\xDE\x00", 8),
         Value("\xC3\xA9\xE2\x80\xA2\xF0\x9F\x98\x80")},
        // A UID reads as the XML writer shows it.
        {"\x80\x07", Value([] {
             Dictionary uid;
             uid.insert("CF$UID", Value(std::int64_t{7}));
             return uid;
         }())},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.object));
        EXPECT_EQ(read(assembleBinary({c.object})), c.expected);
    }
}

TEST(BinaryReader, ReadsContainersAndSharedObjects) {
    // 0: dict {name: 2, list: 3}; 3: array [2, 4, 2]; a set reads as an array.
    const std::string bytes = assembleBinary({
        marker(0xD, 2) + "\x01\x05" + "\x02\x03",
        ascii("name"),
        ascii("Kelvane"),
        marker(0xA, 3) + "\x02\x04\x02",
        marker(0xC, 1) + "\x06",
        ascii("list"),
        "\x10\x01",
    });
    const Value value = read(bytes);
    const Dictionary& root = *value.asDictionary();
    ASSERT_EQ(root.size(), 2u);
    EXPECT_EQ(root.entries()[0].key, "name");
    EXPECT_EQ(*findString(root, "name"), "Kelvane");
    EXPECT_EQ(*findArray(root, "list"),
              (Array{Value("Kelvane"), Value(Array{Value(std::int64_t{1})}), Value("Kelvane")}));
}

TEST(BinaryReader, ReadsCountsWrittenAsIntegers) {
    std::string long20(20, 'z');
    std::string elements;
    for (int i = 0; i < 20; ++i) {
        elements += '\x01';
    }
    const Value value = read(assembleBinary({marker(0xA, 20) + elements, ascii(long20)}));
    ASSERT_EQ(value.asArray()->size(), 20u);
    EXPECT_EQ(*value.asArray()->back().asString(), long20);
}

TEST(BinaryReader, ReferencesMayBeWide) {
    const std::string bytes = assembleBinary({marker(0xA, 1) + bigEndian(1, 8), ascii("x")}, 0, 8);
    EXPECT_EQ(*read(bytes).asArray(), Array{Value("x")});
}

std::string withTrailerByte(std::string bytes, std::size_t fromEnd, char value) {
    bytes[bytes.size() - fromEnd] = value;
    return bytes;
}

// A tree of `levels` arrays, each holding `fanOut` references to the next,
// ending in one string: tiny on disk, fanOut^levels values when expanded.
std::string expansionBomb(int levels, int fanOut) {
    std::vector<std::string> objects;
    for (int level = 0; level < levels; ++level) {
        objects.push_back(
            marker(0xA, static_cast<std::uint64_t>(fanOut)) +
            std::string(static_cast<std::size_t>(fanOut), static_cast<char>(level + 1)));
    }
    objects.push_back(ascii("lol"));
    return assembleBinary(objects);
}

TEST(BinaryReader, RefusesDamagedFiles) {
    const std::string good = assembleBinary({marker(0xA, 1) + "\x01", ascii("x")});
    const struct {
        std::string name;
        std::string bytes;
        std::string reason;
    } cases[] = {
        {"too short", "bplist00" + std::string(20, '\0'),
         "too short for a binary property list (28 bytes)"},
        {"offset size 0", withTrailerByte(good, 26, 0), "offset size 0 is not between 1 and 8"},
        {"reference size 9", withTrailerByte(good, 25, 9),
         "object reference size 9 is not between 1 and 8"},
        {"object count past the table", withTrailerByte(good, 17, 9),
         "object count 9 does not fit the offset table"},
        {"top object out of range", withTrailerByte(good, 9, 2), "top object 2 out of range"},
        {"table offset inside the header", withTrailerByte(good, 1, 3),
         "offset table position 3 out of range"},
        {"reference out of range", assembleBinary({marker(0xA, 1) + "\x39", ascii("x")}),
         "object reference 57 out of range"},
        {"offset out of range",
         [&] {
             std::string bytes = good;
             bytes[bytes.size() - 32 - 1] = static_cast<char>(200); // offset of object 1
             return bytes;
         }(),
         "offset 200 of object 1 out of range"},
        {"array past the end", assembleBinary({marker(0xA, 14) + "\x01"}),
         "object 0 runs past the object area"},
        {"data past the end", assembleBinary({marker(0x4, 200)}),
         "object 0 runs past the object area"},
        {"huge count", assembleBinary({"\x4F\x13" + bigEndian(~0ULL, 8)}),
         "object 0 runs past the object area"},
        {"integer past the end", assembleBinary({"\x13\x01"}),
         "object 0 runs past the object area"},
        {"array containing itself", assembleBinary({marker(0xA, 1) + std::string(1, '\0')}),
         "object 0 contains itself"},
        {"indirect cycle",
         assembleBinary(
             {marker(0xA, 1) + "\x01", marker(0xD, 1) + std::string("\x02\x00", 2), ascii("k")}),
         "object 0 contains itself"},
        {"key that is not a string", assembleBinary({marker(0xD, 1) + "\x01\x01", "\x10\x01"}),
         "dictionary key 1 in object 0 is not a string"},
        {"null", assembleBinary({marker(0xA, 1) + "\x01", std::string(1, '\0')}),
         "object 1 is null, which property lists cannot hold"},
        {"unknown type", assembleBinary({"\x71\x41"}), "object 0 has the unknown type 0x71"},
        {"integer of 32 bytes", assembleBinary({"\x15" + std::string(32, '\0')}),
         "integer object 0 has an unsupported size"},
        {"integer past 64 bits", assembleBinary({"\x14" + bigEndian(1, 8) + bigEndian(0, 8)}),
         "integer object 0 does not fit in 64 bits"},
        {"real of 2 bytes", assembleBinary({"\x21\x00\x00"}),
         "real object 0 has an unsupported size"},
        {"non-ASCII in an ASCII string", assembleBinary({ascii("caf\xC3\xA9")}),
         "string object 0 is not ASCII"},
        {"unpaired surrogate", assembleBinary({marker(0x6, 1) + std::string("\xD8\x3D", 2)}),
         "string object 0 holds an unpaired UTF-16 surrogate"},
        {"malformed length", assembleBinary({"\x5F\x51\x00"}), "object 0 has a malformed length"},
        {"expansion far beyond the file",
         expansionBomb(6, 16), // 16^6 = 2^24 strings from a file of this size
         "the data expands to more than 1000000 values"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto start = std::chrono::steady_clock::now();
        try {
            (void)read(c.bytes);
            ADD_FAILURE() << "no error";
        } catch (const ParseError& error) {
            EXPECT_EQ(error.reason(), c.reason);
            EXPECT_EQ(error.line(), 0u);
            EXPECT_EQ(std::string(error.what()), "App.entitlements: " + c.reason);
        }
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    }
    EXPECT_LT(expansionBomb(6, 16).size(), 200u);
}

TEST(BinaryReader, BoundsDepthAndValuesByTheLimits) {
    // A chain of 600 arrays, each holding the next.
    std::vector<std::string> chain;
    for (int i = 0; i < 600; ++i) {
        chain.push_back(marker(0xA, 1) + bigEndian(static_cast<std::uint64_t>(i + 1), 2));
    }
    chain.push_back(ascii("end"));
    const std::string deep = assembleBinary(chain, 0, 2);
    try {
        (void)read(deep);
        ADD_FAILURE() << "no error";
    } catch (const ParseError& error) {
        EXPECT_EQ(error.reason(), "nesting deeper than 512 levels");
    }
    ReadLimits roomy;
    roomy.maxDepth = 1000;
    EXPECT_NO_THROW((void)read(deep, roomy));

    // A shared subtree that is shallow where first met and too deep later.
    ReadLimits shallow;
    shallow.maxDepth = 2;
    const std::string shared = assembleBinary({
        marker(0xA, 2) + "\x02\x01", // [ [x], [ [x] ] ]: object 2 at depth 2, then 3
        marker(0xA, 1) + "\x02",
        marker(0xA, 1) + "\x03",
        ascii("x"),
    });
    EXPECT_THROW((void)read(shared, shallow), ParseError);

    ReadLimits few;
    few.maxValues = 3;
    EXPECT_NO_THROW((void)read(expansionBomb(1, 2), few));
    EXPECT_THROW((void)read(expansionBomb(1, 3), few), ParseError);
}

} // namespace
} // namespace kelvane::plist
