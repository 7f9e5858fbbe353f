#pragma once

#include "checks/DoctorCheck.h"
#include "cli/CommandIO.h"
#include "cli/Reading.h"
#include "cli/ScanAdoption.h"
#include "report/TextStyle.h"
#include "scanner/CheckRegistry.h"

// The command line is built in the .cpp files; includers need only the name.
namespace CLI {
class App;
} // namespace CLI
#include <ostream>
#include <string>
#include <vector>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

enum class ScanFormat { text, json, sarif, junit, github, xcode };

// The least severe finding that fails the command (exit status 1).
enum class FailOn { error, warning, never };

struct ScanOptions {
    ScanFormat format = ScanFormat::text;
    FailOn failOn = FailOn::error;
    // Draw the rows in place while the scan runs: for a person at a
    // terminal, never for a report that a program reads.
    bool live = false;
    // The window's 150 ms before each check, so a person can follow the
    // rows; only worth it when they are drawn live.
    bool pace = false;
    TextStyle style{};
    Reading reading{};
    // Baseline and exclusions from the command line and .kelvane.yml.
    ReportAdoption adoption{};
};

// Scans the project at `path` (a bundle, or a folder holding one) through
// the scan view model and prints the report on `out`. Failing checks are
// logged on `err`, so `out` stays a clean report. Returns the exit status:
// findings at or above the threshold, or "not loaded" (with the reason on
// `err` and nothing on `out`).
int runScan(const std::string& path, const ScanOptions& options, std::ostream& out,
            std::ostream& err, std::vector<AnyCheck> checks = makeCheckRegistry());

// The scan of runScan for a location already resolved (a folder walk found
// it), which is not checked a second time: what is wrong with it is the
// loader's to say.
int scanLocation(const std::string& projectPath, const ScanOptions& options, std::ostream& out,
                 std::ostream& err, std::vector<AnyCheck> checks = makeCheckRegistry());

// A plain report in `format`, failing on errors.
int runScan(const std::string& path, ScanFormat format, std::ostream& out, std::ostream& err,
            std::vector<AnyCheck> checks = makeCheckRegistry());

// `kelvane scan [PATH] [--all] [--format F] [--fail-on S] [--color C]
// [--no-pace] [--output FILE]`.
void addScanCommand(CLI::App& app, CommandIO& io);

} // namespace kelvane::cli
