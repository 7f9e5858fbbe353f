#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvane::plist::utf8 {

// Appends the UTF-8 form of a Unicode scalar value (not a surrogate, at most
// U+10FFFF; callers check).
void append(std::string& out, char32_t codePoint);

// Offset of the first byte where `bytes` stops being well-formed UTF-8
// (overlong forms, surrogates and values past U+10FFFF included), or npos.
[[nodiscard]] std::size_t findInvalid(std::string_view bytes) noexcept;

[[nodiscard]] constexpr bool isHighSurrogate(char32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
[[nodiscard]] constexpr bool isLowSurrogate(char32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
[[nodiscard]] constexpr char32_t combineSurrogates(char32_t high, char32_t low) noexcept {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

} // namespace kelvane::plist::utf8
