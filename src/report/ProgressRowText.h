#pragma once

#include "report/TextStyle.h"
#include "scanner/CheckProgress.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::report {

// ✓, ! or ✗ for a finished check.
[[nodiscard]] std::string_view severityMark(Severity severity) noexcept;

// One row of the check list as the terminal draws it: a mark (a dot while
// pending, a spinner frame while running, then ✓ ! ✗), the title padded to
// `titleWidth`, and once finished the status label. `failure` is the text
// of a check that threw, shown instead of the label.
[[nodiscard]] std::string progressRowLine(const CheckProgress& row, const TextStyle& style,
                                          std::size_t spinnerFrame, std::size_t titleWidth,
                                          const std::optional<std::string>& failure = {});

// The width of the longest title, so labels line up.
[[nodiscard]] std::size_t titleWidth(const std::vector<CheckProgress>& rows) noexcept;

} // namespace kelvane::report
