#pragma once

#include "diagnostics/Severity.h"
#include "scanner/CheckProgress.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// How a scan reads on screen, as plain values: the window draws from these and
// the tests read them without building a widget. Nothing here knows Qt, so a
// terminal front-end can word its rows the same way.
namespace kelvane::presentation {

// The few colours a scan is drawn in; each front-end picks its own shades.
enum class Tone {
    muted,   // pending rows: gray at 30 % opacity
    accent,  // the running row: blue
    success, // green
    warning, // orange
    failure, // red
};

[[nodiscard]] Tone severityTone(Severity severity) noexcept;

// The circle in front of a row and what sits inside it. `symbol` is empty
// while the row is pending or running; a running row shows a spinner instead.
struct RowMark {
    Tone tone = Tone::muted;
    std::string_view symbol{};
    bool spinner = false;
    friend bool operator==(const RowMark&, const RowMark&) = default;
};

// A check that finished without an issue (it did not apply, or it threw) is
// drawn as passed: nothing was found against the project.
[[nodiscard]] RowMark rowMark(const CheckProgress& row) noexcept;
// "Passed", "Warning" or "Issue detected" once the row has finished; nothing
// before.
[[nodiscard]] std::optional<std::string_view> rowStatusLabel(const CheckProgress& row) noexcept;

// What a screen reader says of a row: its title and how it stands,
// "Signing Consistency, Warning"; "Pending" or "Running" before it finishes.
[[nodiscard]] std::string rowAccessibleName(const CheckProgress& row);

[[nodiscard]] std::string_view scanTitle(bool isScanning) noexcept;
// "3/9" while scanning; afterwards "1 error • 2 warnings • 5 passed", leaving
// out every count that is zero. Rows without an issue count nowhere.
[[nodiscard]] std::string scanSubtitle(const std::vector<CheckProgress>& rows, bool isScanning);

} // namespace kelvane::presentation
