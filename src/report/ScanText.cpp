#include "report/ScanText.h"

#include "report/ProgressRowText.h"
#include "presentation/IssueText.h"
#include "presentation/ScanPresentation.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

namespace kelvane::report {

namespace {

void writeIssue(const DoctorIssue& issue, std::ostream& out, const TextStyle& style) {
    presentation::writeIssueText(
        issue, out,
        {.paint = [&](Tone tone, std::string_view text) { return style.paint(tone, text); },
         .bold = [&](std::string_view text) { return style.bold(text); }});
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
    std::string summary = presentation::scanSubtitle(finishedRows(scan.report), false);
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

} // namespace kelvane::report
