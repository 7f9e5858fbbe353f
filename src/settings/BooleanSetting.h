#pragma once

#include <string_view>

namespace kelvane::settings {

// How Xcode reads a boolean setting: true when the first character is y, t
// (either case) or a digit 1–9 (YES, yes, true, 1); NO, 0 and empty are false.
[[nodiscard]] constexpr bool isYes(std::string_view value) noexcept {
    return !value.empty() && std::string_view("YyTt123456789").find(value.front()) != std::string_view::npos;
}

} // namespace kelvane::settings
