#include "cli/XcodeDiagnostics.h"

#include "report/Findings.h"

#include "diagnostics/JoinLines.h"

#include <algorithm>
#include <string>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

void writeXcodeDiagnostics(const FinishedScan& scan, const EvidenceLocations& locations,
                           std::ostream& out) {
    for (const Finding& finding : findings(scan)) {
        const DoctorIssue& issue = *finding.issue;
        const std::vector<EvidenceLocation> places = locations.locationsFor(issue);
        // Xcode reads one line per diagnostic, so the title must not break.
        std::string title = issue.title;
        std::replace(title.begin(), title.end(), '\n', ' ');
        if (!issue.configurations.empty()) {
            title += " (" + join(issue.configurations, ", ") + ")";
        }
        // With a line and column, Xcode's issue navigator jumps to them.
        if (places.empty()) {
            out << scan.projectPath;
        } else {
            const EvidenceLocation& place = places.front();
            out << place.file;
            if (place.line != 0) {
                out << ':' << place.line << ':' << (place.column == 0 ? 1 : place.column);
            }
        }
        out << ": " << rawValue(issue.severity) << ": " << title << '\n';
    }
}

} // namespace kelvane::cli
