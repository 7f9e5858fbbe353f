#pragma once

#include <optional>
#include <string_view>

namespace kelvane {

// How bad a finding is. Declared in rank order, so the built-in comparisons
// of the enumeration are the ranking the scanner sorts by.
enum class Severity {
    success,
    warning,
    error,
};

// The case name, e.g. "warning".
[[nodiscard]] std::string_view rawValue(Severity severity) noexcept;
// Exactly "success", "warning" or "error"; anything else gives nothing.
[[nodiscard]] std::optional<Severity> severityFromRawValue(std::string_view text) noexcept;

} // namespace kelvane
