#include "plist/Base64.h"

#include <array>

namespace kelvane::plist {

namespace {
constexpr std::array<signed char, 256> makeDecodeTable() {
    std::array<signed char, 256> table{};
    table.fill(-1);
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<signed char>(i);
    }
    return table;
}
constexpr std::array<signed char, 256> kDecode = makeDecodeTable();

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}
} // namespace

std::optional<Data> decodeBase64(std::string_view text) {
    Data out;
    out.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    int count = 0; // sextets collected in the current group
    std::size_t padding = 0;
    for (char c : text) {
        if (isBlank(c)) {
            continue;
        }
        if (c == '=') {
            ++padding;
            continue;
        }
        const signed char sextet = kDecode[static_cast<unsigned char>(c)];
        if (sextet < 0 || padding > 0) {
            return std::nullopt; // a foreign character, or text after the padding
        }
        bits = bits << 6 | static_cast<std::uint32_t>(sextet);
        if (++count == 4) {
            out.push_back(static_cast<std::uint8_t>(bits >> 16));
            out.push_back(static_cast<std::uint8_t>(bits >> 8));
            out.push_back(static_cast<std::uint8_t>(bits));
            bits = 0;
            count = 0;
        }
    }
    if (count == 1 || padding > 2 || (padding > 0 && count + padding != 4)) {
        return std::nullopt;
    }
    if (count == 2) {
        out.push_back(static_cast<std::uint8_t>(bits >> 4));
    } else if (count == 3) {
        out.push_back(static_cast<std::uint8_t>(bits >> 10));
        out.push_back(static_cast<std::uint8_t>(bits >> 2));
    }
    return out;
}

} // namespace kelvane::plist
