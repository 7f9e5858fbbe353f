#pragma once

#include <cstddef>
#include <string_view>

namespace kelvane::settings {

// One step through UTF-8 text for the operators that work per character.
struct DecodedScalar {
    char32_t scalar = 0;
    // False for a byte that does not start a well-formed sequence; `scalar`
    // is then U+FFFD and exactly that byte was consumed.
    bool wellFormed = false;
};

// Decodes the character at `at` and advances past it (always by at least one
// byte, so loops over hostile bytes end).
[[nodiscard]] inline DecodedScalar nextScalar(std::string_view text, std::size_t& at) noexcept {
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80) {
        ++at;
        return {lead, true};
    }
    std::size_t length = 0;
    char32_t value = 0;
    char32_t minimum = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        value = lead & 0x1F;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        value = lead & 0x0F;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        value = lead & 0x07;
        minimum = 0x10000;
    }
    if (length == 0 || at + length > text.size()) {
        ++at;
        return {0xFFFD, false};
    }
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xC0) != 0x80) {
            ++at;
            return {0xFFFD, false};
        }
        value = (value << 6) | (next & 0x3F);
    }
    if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
        ++at;
        return {0xFFFD, false};
    }
    at += length;
    return {value, true};
}

} // namespace kelvane::settings
