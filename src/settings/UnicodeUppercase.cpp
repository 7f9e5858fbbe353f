#include "settings/UnicodeUppercase.h"

#include "plist/Utf8.h"
#include "settings/Utf8Scalars.h"

#include <array>
#include <cstdint>

namespace kelvane {
namespace {

// Code points first, first + stride, ..., last map to the code point plus
// delta. Stride 2 covers the alternating upper/lower pairs of Latin
// Extended-A and Cyrillic, where the lowercase letter is the second.
struct UppercaseRun {
    char32_t first;
    char32_t last;
    std::uint8_t stride;
    std::int32_t delta;
};

constexpr std::array<UppercaseRun, 25> kRuns{{
    {0x0061, 0x007A, 1, -32},  {0x00B5, 0x00B5, 1, 743}, {0x00E0, 0x00F6, 1, -32},
    {0x00F8, 0x00FE, 1, -32},  {0x00FF, 0x00FF, 1, 121}, {0x0101, 0x012F, 2, -1},
    {0x0131, 0x0131, 1, -232}, {0x0133, 0x0137, 2, -1},  {0x013A, 0x0148, 2, -1},
    {0x014B, 0x0177, 2, -1},   {0x017A, 0x017E, 2, -1},  {0x017F, 0x017F, 1, -300},
    {0x03AC, 0x03AC, 1, -38},  {0x03AD, 0x03AF, 1, -37}, {0x03B1, 0x03C1, 1, -32},
    {0x03C2, 0x03C2, 1, -31},  {0x03C3, 0x03CB, 1, -32}, {0x03CC, 0x03CC, 1, -64},
    {0x03CD, 0x03CE, 1, -63},  {0x0430, 0x044F, 1, -32}, {0x0450, 0x045F, 1, -80},
    {0x0461, 0x0481, 2, -1},   {0x048B, 0x04BF, 2, -1},  {0x0561, 0x0586, 1, -48},
    {0xFF41, 0xFF5A, 1, -32},
}};

char32_t uppercase(char32_t c) noexcept {
    for (const UppercaseRun& run : kRuns) {
        if (c < run.first) {
            break;
        }
        if (c <= run.last && (c - run.first) % run.stride == 0) {
            return static_cast<char32_t>(static_cast<std::int32_t>(c) + run.delta);
        }
    }
    return c;
}

} // namespace

std::string uppercasedUnicode(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const std::size_t start = at;
        const settings::DecodedScalar decoded = settings::nextScalar(utf8, at);
        if (!decoded.wellFormed) {
            out += utf8[start];
        } else if (decoded.scalar == 0x00DF) { // ß has no single uppercase letter
            out += "SS";
        } else {
            plist::utf8::append(out, uppercase(decoded.scalar));
        }
    }
    return out;
}

} // namespace kelvane
