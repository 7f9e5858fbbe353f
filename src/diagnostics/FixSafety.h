#pragma once

#include <optional>
#include <string_view>

namespace kelvane {

// How a fix may be applied. Deliberately unordered: no safety class is
// "more" than another.
enum class FixSafety {
    safeAuto,
    requiresConfirmation,
    manualOnly,
};

// The case name, e.g. "requiresConfirmation".
[[nodiscard]] std::string_view rawValue(FixSafety safety) noexcept;
// Exactly one of the three case names; anything else gives nothing.
[[nodiscard]] std::optional<FixSafety> fixSafetyFromRawValue(std::string_view text) noexcept;

} // namespace kelvane
