#include "cli/GitHubAnnotations.h"

#include "report/Findings.h"
#include "diagnostics/JoinLines.h"

#include <string>
#include <string_view>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

namespace {

// The runner splits a command at line breaks and reads '%' as an escape;
// property values also end at ',' and ':'.
std::string escapedData(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '%':
            result += "%25";
            break;
        case '\r':
            result += "%0D";
            break;
        case '\n':
            result += "%0A";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string escapedProperty(std::string_view text) {
    std::string result;
    for (const char c : escapedData(text)) {
        if (c == ':') {
            result += "%3A";
        } else if (c == ',') {
            result += "%2C";
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace

void writeGitHubAnnotations(const FinishedScan& scan, const EvidenceLocations& locations,
                            std::ostream& out) {
    for (const Finding& finding : findings(scan)) {
        const DoctorIssue& issue = *finding.issue;
        out << "::" << rawValue(issue.severity) << ' ';
        const std::vector<EvidenceLocation> places = locations.locationsFor(issue);
        if (!places.empty()) {
            const EvidenceLocation& place = places.front();
            out << "file=" << escapedProperty(relativeToCurrentFolder(place.file)) << ',';
            if (place.line != 0) {
                out << "line=" << place.line << ',';
                if (place.column != 0) {
                    out << "col=" << place.column << ',';
                }
            }
        }
        const std::string configurations =
            issue.configurations.empty() ? "" : " in " + join(issue.configurations, ", ");
        out << "title=" << escapedProperty(issue.title + " (" + finding.checkID + ")" + configurations)
            << "::" << escapedData(issue.description + "\n\nImpact: " + issue.impact) << '\n';
    }
}

} // namespace kelvane::cli
