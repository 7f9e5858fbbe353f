#include "cli/ScanText.h"

#include "cli/ProgressRowText.h"
#include "views/ScanPresentation.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

namespace kelvane::cli {

namespace {

// Multi-line texts keep their own line breaks, each line under the heading.
void writeIndented(std::string_view text, std::string_view indent, std::ostream& out) {
    while (true) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        if (!line.empty()) {
            out << indent << line;
        }
        out << '\n';
        if (end == std::string_view::npos) {
            return;
        }
        text.remove_prefix(end + 1);
    }
}

void writeIssue(const DoctorIssue& issue, std::ostream& out, const TextStyle& style) {
    const Tone tone = views::severityTone(issue.severity);
    out << '\n'
        << style.paint(tone, std::string(severityMark(issue.severity)) + " " +
                                 std::string(rawValue(issue.severity)) + ":")
        << ' ' << style.bold(issue.title) << " [" << issue.id << "]\n";
    writeIndented(issue.description, "  ", out);
    out << "\n  Impact: " << issue.impact << '\n';

    if (!issue.evidence.empty()) {
        out << "\n  Evidence\n";
        for (const EvidenceItem& item : issue.evidence) {
            out << "    " << locationDescription(item.source) << '\n';
            out << "      " << item.key << ": " << item.value << '\n';
            if (item.expectedValue) {
                out << "      Expected: " << *item.expectedValue << '\n';
            }
            if (item.origin) {
                out << "      Set in: " << originDescription(*item.origin) << '\n';
            }
        }
    }

    if (!issue.affectedTargets.empty()) {
        out << "\n  Affected targets\n";
        for (const TargetRef& target : issue.affectedTargets) {
            out << "    " << target.name << " (" << rawValue(target.type);
            if (target.bundleID) {
                out << ", " << *target.bundleID;
            }
            out << ")\n";
        }
    }

    if (issue.fix) {
        const DoctorFix& fix = *issue.fix;
        out << "\n  Fix: " << fix.summary << " (" << rawValue(fix.safety) << ")\n";
        if (fix.warningMessage) {
            out << "    Warning: " << *fix.warningMessage << '\n';
        }
        for (std::size_t i = 0; i < fix.steps.size(); ++i) {
            out << "    " << i + 1 << ". " << fix.steps[i].description << '\n';
            if (const auto* manual = std::get_if<ManualInstruction>(&fix.steps[i].action)) {
                for (const std::string& step : manual->steps) {
                    out << "       - " << step << '\n';
                }
            }
        }
    }
}

} // namespace

std::vector<CheckProgress> finishedRows(const ScanReport& report) {
    std::vector<CheckProgress> rows;
    for (const CheckOutcome& outcome : report.checks) {
        rows.push_back(CheckProgress{.id = outcome.checkID,
                                     .title = checkDisplayTitle(outcome.checkID),
                                     .status = CheckStatus::completed,
                                     .issue = outcome.issue});
    }
    return rows;
}

std::string scanHeading(const FinishedScan& scan, const TextStyle& style) {
    char duration[32];
    std::snprintf(duration, sizeof duration, "%.2f", scan.scanDuration);
    return style.bold("Scanned " + scan.projectName) + " (" + scan.projectPath + ") in " +
           duration + " s";
}

void writeScanFindings(const FinishedScan& scan, std::ostream& out, const TextStyle& style) {
    std::string summary = views::scanSubtitle(finishedRows(scan.report), false);
    const auto failed = std::count_if(scan.report.checks.begin(), scan.report.checks.end(),
                                      [](const CheckOutcome& check) { return check.failure; });
    if (failed > 0) {
        summary += (summary.empty() ? "" : " \u2022 ") + std::to_string(failed) + " failed";
    }
    out << '\n' << style.bold(summary) << '\n';
    for (const DoctorIssue& issue : scan.report.issues) {
        if (issue.severity != Severity::success) {
            writeIssue(issue, out, style);
        }
    }
}

void writeScanText(const FinishedScan& scan, std::ostream& out, const TextStyle& style) {
    out << scanHeading(scan, style) << "\n\n";
    const std::vector<CheckProgress> rows = finishedRows(scan.report);
    const std::size_t width = titleWidth(rows);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        out << progressRowLine(rows[i], style, 0, width, scan.report.checks[i].failure) << '\n';
    }
    writeScanFindings(scan, out, style);
}

} // namespace kelvane::cli
