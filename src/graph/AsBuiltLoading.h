#pragma once

#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// The project at a bundle path read as built, for `configuration` (the
// project's default when absent). Throws with a user-facing text, including
// "No build configuration named …" for a configuration the project lacks.
// With `positions`, the result says where each build setting is written.
[[nodiscard]] ProjectContext loadAsBuilt(const std::string& projectPath,
                                         const std::optional<std::string>& configuration,
                                         bool positions = false);

// What a scan checks as built: every configuration resolved (or only the one
// named), the default one shown.
[[nodiscard]] ProjectContext loadAsBuiltForScan(const std::string& projectPath,
                                                const std::optional<std::string>& configuration,
                                                bool positions = false);

} // namespace kelvane
