#include "cli/XcodeDiagnostics.h"

#include "cli/Findings.h"

#include "diagnostics/JoinLines.h"

#include <algorithm>
#include <string>

namespace kelvane::cli {

void writeXcodeDiagnostics(const FinishedScan& scan, const EvidenceFiles& files,
                           std::ostream& out) {
    for (const Finding& finding : findings(scan)) {
        const DoctorIssue& issue = *finding.issue;
        const std::vector<std::string> issueFiles = files.filesFor(issue);
        // Xcode reads one line per diagnostic, so the title must not break.
        std::string title = issue.title;
        std::replace(title.begin(), title.end(), '\n', ' ');
        if (!issue.configurations.empty()) {
            title += " (" + join(issue.configurations, ", ") + ")";
        }
        out << (issueFiles.empty() ? scan.projectPath : issueFiles.front()) << ": "
            << rawValue(issue.severity) << ": " << title << '\n';
    }
}

} // namespace kelvane::cli
