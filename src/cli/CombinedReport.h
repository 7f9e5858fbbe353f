#pragma once

#include "cli/ScanCommand.h"
#include "selection/RepositoryProjects.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace kelvane::cli {

// One project of a run over several: the report its own scan wrote, in the
// run's format, or why it could not be loaded.
struct ProjectReport {
    FolderProject project;
    std::string report;
    std::optional<std::string> failure;
};

// Every project's report as one document of `format`, in the projects' order:
// text grouped by project with a closing count; JSON with one entry per
// project; SARIF with one run holding every project's results; JUnit with a
// suite per project; GitHub and Xcode lines one project after another. A
// project that was not loaded is an entry, a tool notification, a suite with
// one error, or an error line.
void writeCombinedReport(const std::string& path, const std::vector<ProjectReport>& projects,
                         ScanFormat format, const TextStyle& style, std::ostream& out);

} // namespace kelvane::cli
