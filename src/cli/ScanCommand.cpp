#include "cli/ScanCommand.h"

#include "cli/LoadFailure.h"
#include "cli/ModelJson.h"
#include "cli/ScanJson.h"
#include "cli/ScanText.h"
#include "model/FilePath.h"
#include "scanner/ProjectScanner.h"
#include "scanner/SleepingLoop.h"
#include "selection/ProjectSelection.h"
#include "selection/ProjectSelectionError.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>

namespace kelvane::cli {

int runScan(const std::string& path, ScanFormat format, std::ostream& out, std::ostream& err,
            std::vector<AnyCheck> checks) {
    std::string projectPath;
    try {
        projectPath = resolveSelection(path);
    } catch (const ProjectSelectionError& error) {
        return reportLoadFailure(error, err);
    }

    // Pacing exists for a progress display to show each check running; a
    // report printed at the end has nothing to show meanwhile.
    SleepingLoop loop;
    const ProjectScanner scanner(loop, err, std::move(checks), std::chrono::milliseconds{0});
    std::optional<ScanCompletion> completion;
    const auto start = std::chrono::steady_clock::now();
    scanner.scan(projectPath, nullptr,
                 [&](ScanCompletion result) { completion = std::move(result); });
    loop.runUntilIdle();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;

    if (const auto* error = std::get_if<ScanError>(&*completion)) {
        return reportLoadFailure(*error, err);
    }
    FinishedScan scan{
        .projectPath = projectPath,
        .projectName = std::string(path::stem(projectPath)),
        .scanDuration = elapsed.count(),
        .report = std::get<ScanReport>(std::move(*completion)),
    };
    if (format == ScanFormat::json) {
        out << toDocument(toJson(scan));
    } else {
        writeScanText(scan, out);
    }
    const auto& issues = scan.report.issues;
    const bool anyError = std::any_of(issues.begin(), issues.end(), [](const DoctorIssue& issue) {
        return issue.severity == Severity::error;
    });
    return anyError ? kExitFindings : kExitClean;
}

void addScanCommand(CLI::App& app, CommandIO& io) {
    struct Options {
        std::string path;
        std::string format = "text";
    };
    // CLI11 writes into the options while parsing and calls back afterwards,
    // so they must outlive this function; the command owns them.
    auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("scan", "Run every check over a project and report");
    command->add_option("path", options->path, "An .xcodeproj, an .xcworkspace, or a folder")
        ->required();
    command->add_option("--format", options->format, "Output format")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->callback([options, &io] {
        const ScanFormat format = options->format == "json" ? ScanFormat::json : ScanFormat::text;
        io.exitStatus = runScan(options->path, format, io.out, io.err);
    });
}

} // namespace kelvane::cli
