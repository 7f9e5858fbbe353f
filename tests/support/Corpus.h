#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelvane::testing {

// The shared corpus of real projects, which sits beside the repository when
// it is there at all (KELVANE_CORPUS_DIR names another place). Empty when
// there is none: tests over it then have nothing to test.
[[nodiscard]] std::filesystem::path corpusDir();

// Every .xcodeproj and .xcworkspace folder beneath `corpus`, sorted.
[[nodiscard]] std::vector<std::string> projectLocations(const std::filesystem::path& corpus);

} // namespace kelvane::testing
