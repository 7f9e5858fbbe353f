#include "cli/ScanText.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace kelvane::cli {

namespace {

constexpr std::string_view kPassedMark = "\u2713";  // ✓
constexpr std::string_view kWarningMark = "\u26A0"; // ⚠
constexpr std::string_view kErrorMark = "\u2717";   // ✗
constexpr std::string_view kFailedMark = "!";
constexpr std::string_view kNoIssueMark = "-";

std::string_view markFor(Severity severity) {
    switch (severity) {
    case Severity::success:
        return kPassedMark;
    case Severity::warning:
        return kWarningMark;
    case Severity::error:
        return kErrorMark;
    }
    return kNoIssueMark;
}

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

std::string plural(std::size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

void writeCheckLines(const ScanReport& report, std::ostream& out) {
    std::size_t errors = 0, warnings = 0, passed = 0, failed = 0;
    for (const CheckOutcome& outcome : report.checks) {
        const std::string title = checkDisplayTitle(outcome.checkID);
        if (outcome.failure) {
            ++failed;
            out << "  " << kFailedMark << ' ' << title << ": check failed: " << *outcome.failure
                << '\n';
        } else if (outcome.issue) {
            const Severity severity = outcome.issue->severity;
            errors += severity == Severity::error ? 1 : 0;
            warnings += severity == Severity::warning ? 1 : 0;
            passed += severity == Severity::success ? 1 : 0;
            out << "  " << markFor(severity) << ' ' << title << ": " << outcome.issue->title
                << '\n';
        } else {
            out << "  " << kNoIssueMark << ' ' << title << ": not applicable\n";
        }
    }
    out << '\n'
        << plural(errors, "error") << ", " << plural(warnings, "warning") << ", " << passed
        << " passed";
    if (failed > 0) {
        out << ", " << failed << " failed";
    }
    out << '\n';
}

void writeIssue(const DoctorIssue& issue, std::ostream& out) {
    out << '\n'
        << markFor(issue.severity) << ' ' << rawValue(issue.severity) << ": " << issue.title << " ["
        << issue.id << "]\n";
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

void writeScanText(const FinishedScan& scan, std::ostream& out) {
    char duration[32];
    std::snprintf(duration, sizeof duration, "%.2f", scan.scanDuration);
    out << "Scanned " << scan.projectName << " (" << scan.projectPath << ") in " << duration
        << " s\n\n";
    writeCheckLines(scan.report, out);
    for (const DoctorIssue& issue : scan.report.issues) {
        if (issue.severity != Severity::success) {
            writeIssue(issue, out);
        }
    }
}

} // namespace kelvane::cli
