#pragma once

#include "cli/CombinedReport.h"

#include <nlohmann/json.hpp>

#include <vector>

namespace kelvane::cli {

// The SARIF reports of several projects as one run, as code scanning wants a
// single upload: the rules of every report once, every result (with the
// project it belongs to among its properties), every tool notification, and
// one more notification for each project that was not loaded. Each result
// keeps the artifact locations its own report gave it.
[[nodiscard]] nlohmann::ordered_json combinedSarif(const std::vector<ProjectReport>& projects);

} // namespace kelvane::cli
