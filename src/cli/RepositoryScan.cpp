#include "cli/RepositoryScan.h"

#include "cli/CombinedReport.h"
#include "cli/CommandIO.h"
#include "cli/LoadFailure.h"
#include "cli/ScanAdoption.h"
#include "selection/AmbiguousFolderError.h"
#include "selection/ProjectSelectionError.h"

#include <algorithm>
#include <memory>
#include <sstream>
#include <string_view>

namespace kelvane::cli {

namespace {

// A scan writes "kelvane: <reason>" for a project it could not load.
std::string reasonIn(std::string_view log) {
    constexpr std::string_view prefix = "kelvane: ";
    if (log.starts_with(prefix)) {
        log.remove_prefix(prefix.size());
    }
    while (!log.empty() && log.back() == '\n') {
        log.remove_suffix(1);
    }
    return std::string(log);
}

// Check failures of one project among several name the project they are
// about.
void forwardLog(const std::string& project, std::string_view log, std::ostream& err) {
    while (!log.empty()) {
        const std::size_t end = log.find('\n');
        err << project << ": " << log.substr(0, end) << '\n';
        log.remove_prefix(end == std::string_view::npos ? log.size() : end + 1);
    }
}

// When the walk found nothing only because the configuration excludes
// every project, the reason is worth more than "nothing found".
int reportSelectionFailure(const ProjectSelectionError& error, const std::string& path,
                           const ReportAdoption& adoption, std::ostream& err) {
    if (error.errorCase() == ProjectSelectionError::Case::noProjectsFound &&
        !adoption.exclude.empty()) {
        try {
            const std::vector<FolderProject> everything = repositoryProjects(path);
            if (const auto excluded = excludedSelection(everything.front().path, adoption)) {
                err << "kelvane: " << *excluded << '\n';
                return kExitNotLoaded;
            }
        } catch (const ProjectSelectionError&) {
            // Nothing there even unexcluded: the plain answer stands.
        }
    }
    return reportLoadFailure(error, err);
}

} // namespace

int runRepositoryScan(const std::string& path, bool all, const ScanOptions& options,
                      std::ostream& out, std::ostream& err, std::vector<AnyCheck> checks) {
    if (all) {
        return runScanAll(path, options, out, err, checks);
    }
    std::string project;
    try {
        project = resolveRepositoryProject(path, options.adoption.exclude);
    } catch (const AmbiguousFolderError& error) {
        err << "kelvane: " << error.what() << "\nPass one of them, or --all to scan them all.\n";
        return kExitNotLoaded;
    } catch (const ProjectSelectionError& error) {
        return reportSelectionFailure(error, path, options.adoption, err);
    }
    return scanLocation(project, options, out, err, std::move(checks));
}

int runScanAll(const std::string& path, const ScanOptions& options, std::ostream& out,
               std::ostream& err, const std::vector<AnyCheck>& checks) {
    std::vector<FolderProject> projects;
    try {
        projects = repositoryProjects(path, options.adoption.exclude);
    } catch (const ProjectSelectionError& error) {
        return reportSelectionFailure(error, path, options.adoption, err);
    }
    // Rows drawn in place belong to one project at a time; a run over
    // several prints its report once, at the end.
    ScanOptions each = options;
    each.live = false;
    each.pace = false;
    // One baseline holds every project's findings, written once.
    const std::string& baselineFile = options.adoption.writeBaselineTo;
    if (!baselineFile.empty()) {
        each.adoption.gathered = std::make_shared<adoption::Baseline>();
    }

    std::vector<ProjectReport> reports;
    int status = kExitClean;
    for (FolderProject& project : projects) {
        std::ostringstream report;
        std::ostringstream log;
        const int projectStatus = scanLocation(project.path, each, report, log, checks);
        status = std::max(status, projectStatus);
        ProjectReport done{.project = std::move(project), .report = {}, .failure = {}};
        if (projectStatus == kExitNotLoaded) {
            done.failure = reasonIn(log.str());
            err << "kelvane: " << done.project.path << ": " << *done.failure << '\n';
        } else {
            done.report = report.str();
            forwardLog(done.project.path, log.str(), err);
        }
        reports.push_back(std::move(done));
    }
    if (each.adoption.gathered) {
        if (const int recorded = recordBaseline(*each.adoption.gathered, baselineFile, err);
            recorded != kExitClean) {
            return recorded;
        }
    }
    writeCombinedReport(path, reports, options.format, options.style, out);
    return status;
}

} // namespace kelvane::cli
