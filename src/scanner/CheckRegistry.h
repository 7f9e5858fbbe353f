#pragma once

#include "checks/DoctorCheck.h"

#include <vector>

namespace kelvane {

// The checks every scan runs, configured, in run order: the order of
// kCheckTitles (CheckTitles.h), which is deliberately not alphabetical.
[[nodiscard]] std::vector<AnyCheck> makeCheckRegistry();

// What a scan as built runs: the nine, then the checks only that reading
// has, in the order of kAsBuiltCheckTitles.
[[nodiscard]] std::vector<AnyCheck> makeAsBuiltCheckRegistry();

} // namespace kelvane
