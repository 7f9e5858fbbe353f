#include "cli/ScanCommand.h"

#include <CLI/CLI.hpp>

#include "report/CheckFailures.h"
#include "report/EvidenceLocations.h"
#include "cli/GitHubAnnotations.h"
#include "cli/JUnitReport.h"
#include "cli/LiveProgress.h"
#include "cli/LoadFailure.h"
#include "report/ModelJson.h"
#include "cli/RepositoryScan.h"
#include "report/SarifReport.h"
#include "report/ScanJson.h"
#include "report/ScanText.h"
#include "cli/Terminal.h"
#include "cli/XcodeDiagnostics.h"
#include "scanner/ScanViewModel.h"
#include "scanner/SleepingLoop.h"
#include "selection/ProjectSelection.h"
#include "selection/ProjectSelectionError.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <system_error>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

namespace {

// Often enough for the spinner to turn at least once per paced check.
constexpr std::chrono::milliseconds kSpinnerInterval{80};

// The formats an IDE or a CI system reads point at lines; read as built, the
// text and JSON show where each value was set. Positions cost reading time,
// so the rest go without.
bool wantsPositions(const ScanOptions& options) {
    switch (options.format) {
    case ScanFormat::sarif:
    case ScanFormat::github:
    case ScanFormat::xcode:
        return true;
    case ScanFormat::text:
    case ScanFormat::json:
        return options.reading.asBuilt;
    case ScanFormat::junit:
        break;
    }
    return false;
}

void writeReport(const FinishedScan& scan, const EvidenceLocations& locations,
                 const ScanOptions& options, std::ostream& out) {
    switch (options.format) {
    case ScanFormat::text:
        writeScanText(scan, out, options.style);
        return;
    case ScanFormat::json:
        out << toDocument(toJson(scan));
        return;
    case ScanFormat::sarif:
        writeSarifReport(scan, locations, out);
        return;
    case ScanFormat::junit:
        writeJUnitReport(scan, out);
        return;
    case ScanFormat::github:
        writeGitHubAnnotations(scan, locations, out);
        return;
    case ScanFormat::xcode:
        writeXcodeDiagnostics(scan, locations, out);
        return;
    }
}

int exitStatus(const std::vector<DoctorIssue>& issues, FailOn failOn) {
    if (failOn == FailOn::never) {
        return kExitClean;
    }
    const Severity threshold = failOn == FailOn::warning ? Severity::warning : Severity::error;
    const bool failing = std::any_of(issues.begin(), issues.end(), [&](const DoctorIssue& issue) {
        return issue.severity >= threshold;
    });
    return failing ? kExitFindings : kExitClean;
}

// Read as built, a scan also runs the checks only that reading has.
std::vector<AnyCheck> registryFor(const Reading& reading) {
    return reading.asBuilt ? makeAsBuiltCheckRegistry() : makeCheckRegistry();
}

void keepSpinning(SleepingLoop& loop, LiveProgress& live) {
    loop.post(kSpinnerInterval, [&loop, &live] {
        if (live.scanning()) {
            live.tick();
            keepSpinning(loop, live);
        }
    });
}

} // namespace

int runScan(const std::string& path, const ScanOptions& options, std::ostream& out,
            std::ostream& err, std::vector<AnyCheck> checks) {
    std::string projectPath;
    try {
        projectPath = resolveSelection(path);
    } catch (const ProjectSelectionError& error) {
        return reportLoadFailure(error, err);
    }
    return scanLocation(projectPath, options, out, err, std::move(checks));
}

int scanLocation(const std::string& projectPath, const ScanOptions& options, std::ostream& out,
                 std::ostream& err, std::vector<AnyCheck> checks) {
    if (const auto excluded = excludedSelection(projectPath, options.adoption)) {
        err << "kelvane: " << *excluded << '\n';
        return kExitNotLoaded;
    }

    // Live rows own the terminal until the scan ends, so check failures
    // wait until then.
    std::ostringstream heldFailures;
    std::ostream& failureLog = options.live ? heldFailures : err;
    const auto failures = std::make_shared<CheckFailures>();

    SleepingLoop loop;
    const auto pause =
        options.pace ? ProjectScanner::kDefaultCheckPause : std::chrono::milliseconds{0};
    ScanViewModel model(
        loop,
        ProjectScanner(loop, failureLog, recordingFailures(std::move(checks), failures), pause,
                       projectLoader(options.reading, wantsPositions(options))));
    std::optional<LiveProgress> live;
    if (options.live) {
        live.emplace(out, options.style);
        model.addObserver([&live](const ScanState& next) { live->show(next); });
        keepSpinning(loop, *live);
    }
    model.startScan(projectPath);
    loop.runUntilIdle();
    err << heldFailures.str();

    const auto* completed = std::get_if<CompletedState>(&model.state());
    if (completed == nullptr) {
        const auto* failed = std::get_if<ErrorState>(&model.state());
        // A loop that runs dry always leaves a finished scan; anything else
        // is a fault here, still reported rather than crashed on.
        err << "kelvane: " << (failed ? failed->message : "the scan did not finish") << '\n';
        return kExitNotLoaded;
    }
    FinishedScan scan = finishedScan(completed->result, *failures);
    if (const int status = adoptReport(scan.report, options.adoption, err); status != kExitClean) {
        return status;
    }
    const EvidenceLocations locations(scan.report.project);
    placeOrigins(scan.report, locations);
    if (live) {
        live->finish(scan);
    } else {
        writeReport(scan, locations, options, out);
    }
    return exitStatus(scan.report.issues, options.failOn);
}

int runScan(const std::string& path, ScanFormat format, std::ostream& out, std::ostream& err,
            std::vector<AnyCheck> checks) {
    return runScan(path, ScanOptions{.format = format}, out, err, std::move(checks));
}

void addScanCommand(CLI::App& app, CommandIO& io) {
    // Option values by name; the names are what --help and a mistyped value
    // show.
    static const std::map<std::string, ScanFormat> formats{
        {"text", ScanFormat::text},   {"json", ScanFormat::json},     {"sarif", ScanFormat::sarif},
        {"junit", ScanFormat::junit}, {"github", ScanFormat::github}, {"xcode", ScanFormat::xcode}};
    static const std::map<std::string, FailOn> thresholds{
        {"error", FailOn::error}, {"warning", FailOn::warning}, {"never", FailOn::never}};
    static const std::map<std::string, ColorChoice> colors{{"auto", ColorChoice::automatic},
                                                           {"always", ColorChoice::always},
                                                           {"never", ColorChoice::never}};
    struct Options {
        std::string path = ".";
        bool all = false;
        std::string format = "text";
        std::string failOn = "error";
        std::string color = "auto";
        bool noPace = false;
        std::string output;
        Reading reading;
        AdoptionOptions adoption;
    };
    // CLI11 writes into the options while parsing and calls back afterwards,
    // so they must outlive this function; the command owns them.
    auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("scan", "Run every check over a project and report");
    command->add_option("path", options->path,
                        "An .xcodeproj, an .xcworkspace, or a folder (default: the current one)");
    command->add_flag("--all", options->all,
                      "Scan every top-level project beneath the folder, in one report");
    CLI::Option* format =
        command->add_option("--format", options->format, "Report format")
            ->check(CLI::IsMember({"text", "json", "sarif", "junit", "github", "xcode"}))
            ->capture_default_str();
    command
        ->add_option("--fail-on", options->failOn,
                     "Exit with 1 on findings of this severity or worse")
        ->check(CLI::IsMember({"error", "warning", "never"}))
        ->capture_default_str();
    command
        ->add_option("--color", options->color,
                     "Colour the text report; auto colours a terminal unless NO_COLOR is set")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->capture_default_str();
    command->add_flag("--no-pace", options->noPace,
                      "Do not pause between checks while drawing live progress");
    command->add_option("--output", options->output, "Write the report to FILE")
        ->option_text("FILE");
    addReadingOptions(*command, options->reading);
    addAdoptionOptions(*command, options->adoption);
    command->callback([options, format, &io] {
        const bool toTerminal = options->output.empty() && isTerminal(stdout);
        ScanOptions scan{.format = formats.at(options->format),
                         .failOn = thresholds.at(options->failOn)};
        scan.reading = options->reading;
        AdoptedScan adopted;
        try {
            adopted = adoptScan(options->path, options->adoption, scan.reading);
        } catch (const AdoptionError& error) {
            io.err << "kelvane: " << error.what() << '\n';
            io.exitStatus = kExitNotLoaded;
            return;
        }
        if (const auto problem = readingProblem(scan.reading)) {
            io.err << "kelvane: " << *problem << " (or 'reading: as-built' in .kelvane.yml)\n";
            io.exitStatus = kExitNotLoaded;
            return;
        }
        scan.adoption = adopted.adoption;
        scan.live = toTerminal && format->count() == 0;
        scan.pace = scan.live && !options->noPace;
        scan.style.color = useColor(colors.at(options->color), toTerminal, std::getenv("NO_COLOR"));
        if (options->output.empty()) {
            io.exitStatus = runRepositoryScan(options->path, options->all, scan, io.out, io.err,
                                              adopted.checks(registryFor(scan.reading)));
            return;
        }
        // The file is written only once there is a report for it.
        std::ostringstream report;
        io.exitStatus = runRepositoryScan(options->path, options->all, scan, report, io.err,
                                          adopted.checks(registryFor(scan.reading)));
        // With --all, projects that were not loaded still leave the others'.
        if (io.exitStatus == kExitNotLoaded && report.str().empty()) {
            return;
        }
        std::ofstream file(options->output, std::ios::binary | std::ios::trunc);
        if (file) {
            file << report.str();
            file.flush();
        }
        if (!file) {
            io.err << "kelvane: " << options->output << ": "
                   << std::generic_category().message(errno) << '\n';
            io.exitStatus = kExitNotLoaded;
        }
    });
}

} // namespace kelvane::cli
