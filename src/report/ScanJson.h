#pragma once

#include "report/FinishedScan.h"

#include <nlohmann/json.hpp>

namespace kelvane::report {

// The `kelvane scan --format json` document: project, duration, one row per
// check in registry order, and the severity-sorted issues.
[[nodiscard]] nlohmann::ordered_json toJson(const FinishedScan& scan);

} // namespace kelvane::report
