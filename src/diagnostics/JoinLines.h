#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// `parts` with `separator` between neighbours, none around the ends.
[[nodiscard]] std::string join(const std::vector<std::string>& parts, std::string_view separator);

// Finding lines as issue descriptions carry them: one "\n" between lines,
// none after the last.
[[nodiscard]] std::string joinLines(const std::vector<std::string>& lines);

} // namespace kelvane
