#pragma once

#include "scanner/CheckProgress.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// How the rows of a scan read, in the words the results screen uses, for
// every front-end that draws them.

// "Passed", "Warning" or "Issue detected" once the row has finished (a row
// without an issue reads as passed); nothing before.
[[nodiscard]] std::optional<std::string_view> statusLabel(const CheckProgress& row) noexcept;

// "1 error • 2 warnings • 5 passed": the rows counted by their issue's
// severity, zero counts left out, rows without an issue counted nowhere.
// Empty when no row has an issue.
[[nodiscard]] std::string resultSummary(const std::vector<CheckProgress>& rows);

} // namespace kelvane
