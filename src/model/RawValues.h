#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace kelvane {

// Text-to-case lookup shared by the enumerations whose raw values are their
// case names, listed in case order. The match is exact and case-sensitive.
template <class Enum, std::size_t N>
[[nodiscard]] constexpr std::optional<Enum>
enumFromRawValue(const std::array<std::string_view, N>& rawValues, std::string_view text) noexcept {
    for (std::size_t i = 0; i < N; ++i) {
        if (rawValues[i] == text) {
            return static_cast<Enum>(i);
        }
    }
    return std::nullopt;
}

} // namespace kelvane
