#pragma once

#include "checks/DoctorCheck.h"
#include "cli/CommandIO.h"
#include "scanner/CheckRegistry.h"

#include <CLI/App.hpp>
#include <ostream>
#include <string>
#include <vector>

namespace kelvane::cli {

enum class ScanFormat { text, json };

// Scans the project at `path` (a bundle, or a folder holding one) with
// `checks`, without pacing, and prints the report on `out`. Failing checks
// are logged on `err`, so `out` stays a clean report. Returns the exit
// status: findings when an issue is an error, "not loaded" (with the reason
// on `err` and nothing on `out`) when the project could not be loaded.
int runScan(const std::string& path, ScanFormat format, std::ostream& out, std::ostream& err,
            std::vector<AnyCheck> checks = makeCheckRegistry());

// `kelvane scan PATH [--format text|json]`.
void addScanCommand(CLI::App& app, CommandIO& io);

} // namespace kelvane::cli
