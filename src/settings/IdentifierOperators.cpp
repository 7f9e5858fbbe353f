#include "settings/IdentifierOperators.h"

#include "plist/Utf8.h"
#include "settings/Utf8Scalars.h"

#include <algorithm>
#include <array>

namespace kelvane::settings {
namespace {

struct ScalarRange {
    char32_t first;
    char32_t last;
};

constexpr bool inRanges(char32_t c, const auto& ranges) noexcept {
    return std::any_of(ranges.begin(), ranges.end(),
                       [c](const ScalarRange& r) { return r.first <= c && c <= r.last; });
}

// Marks that extend the character before them: combining diacritics,
// variation selectors, emoji skin tones and tags, and the joiner together
// with what it joins. Xcode replaces per user-perceived character; treating
// a base and these marks as one character gives the same count of
// replacements for accented letters, flags and joined emoji, without the
// full segmentation tables.
constexpr std::array<ScalarRange, 10> kExtending{{
    {0x0300, 0x036F},
    {0x1AB0, 0x1AFF},
    {0x1DC0, 0x1DFF},
    {0x200C, 0x200D},
    {0x20D0, 0x20FF},
    {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F},
    {0x1F3FB, 0x1F3FF},
    {0xE0020, 0xE007F},
    {0xE0100, 0xE01EF},
}};

constexpr char32_t kZeroWidthJoiner = 0x200D;
constexpr bool isRegionalIndicator(char32_t c) noexcept {
    return c >= 0x1F1E6 && c <= 0x1F1FF;
}

constexpr bool isAsciiLetter(char32_t c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
constexpr bool isAsciiDigit(char32_t c) noexcept {
    return c >= '0' && c <= '9';
}

// Replaces each user-perceived character that is not one allowed ASCII
// character by `replacement`; a leading digit too.
std::string asciiIdentifier(std::string_view text, char kept, char replacement) {
    std::string out;
    out.reserve(text.size());
    std::size_t at = 0;
    while (at < text.size()) {
        const char32_t base = nextScalar(text, at).scalar;
        bool single = true;
        bool joined = false;
        bool pairedFlag = false;
        while (at < text.size()) {
            std::size_t peek = at;
            const char32_t next = nextScalar(text, peek).scalar;
            const bool flagHalf =
                isRegionalIndicator(base) && isRegionalIndicator(next) && !pairedFlag && single;
            if (!inRanges(next, kExtending) && !joined && !flagHalf) {
                break;
            }
            pairedFlag = pairedFlag || flagHalf;
            joined = next == kZeroWidthJoiner;
            single = false;
            at = peek;
        }
        const bool allowed = isAsciiLetter(base) || base == static_cast<char32_t>(kept) ||
                             (isAsciiDigit(base) && !out.empty());
        out += single && allowed ? static_cast<char>(base) : replacement;
    }
    return out;
}

// The letters C99 (Annex D) allows in identifiers, by script block. The
// blocks are taken whole, ignoring the few unassigned points and signs
// inside some of them; input is taken as it is, without the composition
// Xcode applies first, so a letter followed by a separate combining accent
// keeps the letter and replaces the accent.
constexpr std::array<ScalarRange, 27> kC99Letters{{
    {0x00AA, 0x00AA}, {0x00B5, 0x00B5}, {0x00B7, 0x00B7}, {0x00BA, 0x00BA}, {0x00C0, 0x00D6},
    {0x00D8, 0x00F6}, {0x00F8, 0x0217}, {0x0250, 0x02A8}, {0x02B0, 0x02E4}, {0x0386, 0x03F3},
    {0x0401, 0x04F9}, {0x0531, 0x0587}, {0x05B0, 0x05F2}, {0x0621, 0x06F9}, {0x0901, 0x0D6F},
    {0x0E01, 0x0EDD}, {0x0F00, 0x0FB9}, {0x10A0, 0x10F6}, {0x1E00, 0x1EF9}, {0x1F00, 0x1FFC},
    {0x203F, 0x2040}, {0x2102, 0x2182}, {0x3005, 0x3029}, {0x3041, 0x30FC}, {0x3105, 0x312C},
    {0x4E00, 0x9FA5}, {0xAC00, 0xD7A3},
}};

// Digits of other scripts, which C99 allows in identifiers but not first.
constexpr std::array<ScalarRange, 14> kC99Digits{{
    {0x0660, 0x0669},
    {0x06F0, 0x06F9},
    {0x0966, 0x096F},
    {0x09E6, 0x09EF},
    {0x0A66, 0x0A6F},
    {0x0AE6, 0x0AEF},
    {0x0B66, 0x0B6F},
    {0x0BE7, 0x0BEF},
    {0x0C66, 0x0C6F},
    {0x0CE6, 0x0CEF},
    {0x0D66, 0x0D6F},
    {0x0E50, 0x0E59},
    {0x0ED0, 0x0ED9},
    {0x0F20, 0x0F33},
}};

} // namespace

std::string cIdentifier(std::string_view text) {
    return asciiIdentifier(text, '_', '_');
}

std::string rfc1034Identifier(std::string_view text) {
    return asciiIdentifier(text, '-', '-');
}

std::string c99ExtendedIdentifier(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    std::size_t at = 0;
    while (at < text.size()) {
        const DecodedScalar decoded = nextScalar(text, at);
        const char32_t c = decoded.scalar;
        const bool digit = isAsciiDigit(c) || inRanges(c, kC99Digits);
        if (digit && out.empty()) {
            out += '_';
        } else if (decoded.wellFormed &&
                   (isAsciiLetter(c) || c == '_' || digit || inRanges(c, kC99Letters))) {
            plist::utf8::append(out, c);
        } else {
            out += '_';
        }
    }
    return out;
}

} // namespace kelvane::settings
