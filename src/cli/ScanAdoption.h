#pragma once

#include "adoption/Baseline.h"
#include "checks/DoctorCheck.h"
#include "cli/Reading.h"

// The command line is built in the .cpp files; includers need only the name.
namespace CLI {
class App;
} // namespace CLI
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

// How a repository adopts Kelvane in CI: `--skip`, `--only`, `--baseline`,
// `--write-baseline` and the same in .kelvane.yml, the command line winning.
namespace kelvane::cli {

// What the scan does with its report before any writer sees it, so every
// format reports the same findings and the exit status follows them.
struct ReportAdoption {
    std::optional<adoption::Baseline> baseline{};
    // Where today's findings are recorded; empty: nowhere.
    std::string writeBaselineTo{};
    // A run over several projects gathers each one's findings here instead,
    // and records them all once at the end.
    std::shared_ptr<adoption::Baseline> gathered{};
    // The folder .kelvane.yml is read in and the folders it excludes,
    // relative to it. A repository walk skips them; a single project found
    // inside one is refused.
    std::string root{};
    std::vector<std::string> exclude{};
    // The path the scan was asked for: a bundle named outright is scanned
    // even inside an excluded folder.
    std::string requestedPath{};
};

// The options as the command line gave them.
struct AdoptionOptions {
    std::vector<std::string> skip;
    std::vector<std::string> only;
    std::string baseline;
    std::string writeBaseline;
};

void addAdoptionOptions(CLI::App& command, AdoptionOptions& options);

// A configuration file, a check id or a baseline that cannot be used; its text
// is what the user reads after "kelvane: ".
class AdoptionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct AdoptedScan {
    std::vector<std::string> only;
    std::vector<std::string> skip;
    ReportAdoption adoption;
    // The registry of the scan's reading, cut to the checks to run.
    [[nodiscard]] std::vector<AnyCheck> checks(std::vector<AnyCheck> registry) const;
};

// The folder whose .kelvane.yml applies to a scan of `path`: the folder
// itself, or the current folder for a bundle.
[[nodiscard]] std::string configFolder(const std::string& path);

// Reads .kelvane.yml for a scan of `path` and merges the command line over
// it: the checks to run, the reading (which the file may set) and what to do
// with the report. Throws AdoptionError.
[[nodiscard]] AdoptedScan adoptScan(const std::string& path, const AdoptionOptions& options,
                                    Reading& reading);

// Why the project that a folder resolved to is not scanned, when it lies in
// an excluded folder; a bundle named outright is always scanned.
[[nodiscard]] std::optional<std::string> excludedSelection(const std::string& projectPath,
                                                           const ReportAdoption& adoption);

// Records the baseline when asked, then takes the known findings out of the
// report. Returns kExitClean, or kExitNotLoaded with the reason on `err`.
int adoptReport(ScanReport& report, const ReportAdoption& adoption, std::ostream& err);

// Writes the findings to `path` and says how many; kExitNotLoaded when the
// file cannot be written.
int recordBaseline(const adoption::Baseline& findings, const std::string& path, std::ostream& err);

} // namespace kelvane::cli
