#pragma once

#include <optional>
#include <string_view>

namespace kelvane {

// The first project a workspace file names: capture group 1 of the first match
// of `location\s*=\s*"[^:]*:([^"]*\.xcodeproj)"` in `text`, with the semantics
// of a backtracking regular-expression engine (leftmost start wins) and `\s`
// being space, tab, line feed, vertical tab, form feed or carriage return.
// Runs in time linear in the text, however it is shaped. The result points
// into `text`.
[[nodiscard]] std::optional<std::string_view> firstProjectLocation(std::string_view text) noexcept;

} // namespace kelvane
