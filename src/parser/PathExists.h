#pragma once

#include <string>

namespace kelvane {

// Whether anything (file, folder, ...) is at `path`. An error while asking
// (no permission to search a folder on the way, say) counts as nothing there.
[[nodiscard]] bool pathExists(const std::string& path) noexcept;

} // namespace kelvane
