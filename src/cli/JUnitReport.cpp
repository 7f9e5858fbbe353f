#include "cli/JUnitReport.h"

#include "diagnostics/JoinLines.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace kelvane::cli {

namespace {

enum class Where { attribute, content };

// Control characters other than tab and line breaks are not allowed in XML 1.0
// at all, so they go; a line feed in an attribute would be read back as a
// space, so it is written as a character reference there.
std::string escaped(std::string_view text, Where where = Where::attribute) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\n':
            result += where == Where::attribute ? "&#10;" : "\n";
            break;
        case '\r':
            // A parser turns a literal one into a line feed.
            result += "&#13;";
            break;
        default:
            if (static_cast<unsigned char>(c) >= 0x20 || c == '\t') {
                result += c;
            }
        }
    }
    return result;
}

std::string seconds(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", value);
    return text;
}

struct Counts {
    std::size_t failures = 0;
    std::size_t errors = 0;
    std::size_t skipped = 0;
};

Counts count(const ScanReport& report) {
    Counts counts;
    for (const CheckOutcome& check : report.checks) {
        if (check.failure) {
            ++counts.errors;
        } else if (!check.issue) {
            ++counts.skipped;
        } else if (check.issue->severity != Severity::success) {
            ++counts.failures;
        }
    }
    return counts;
}

void writeTestCase(const CheckOutcome& check, std::string_view suite, std::ostream& out) {
    out << "    <testcase classname=\"" << escaped(suite) << "\" name=\""
        << escaped(checkDisplayTitle(check.checkID)) << "\" id=\"" << escaped(check.checkID)
        << "\"";
    if (check.failure) {
        out << ">\n      <error type=\"checkFailed\" message=\"" << escaped(*check.failure)
            << "\"/>\n    </testcase>\n";
    } else if (!check.issue) {
        out << ">\n      <skipped message=\"not applicable\"/>\n    </testcase>\n";
    } else if (check.issue->severity == Severity::success) {
        out << "/>\n";
    } else {
        const DoctorIssue& issue = *check.issue;
        const std::string configurations =
            issue.configurations.empty() ? "" : " (" + join(issue.configurations, ", ") + ")";
        out << ">\n      <failure type=\"" << rawValue(issue.severity) << "\" message=\""
            << escaped(issue.title + configurations) << "\">" << escaped(issue.description, Where::content)
            << "\n\nImpact: " << escaped(issue.impact, Where::content)
            << "</failure>\n    </testcase>\n";
    }
}

} // namespace

void writeJUnitReport(const FinishedScan& scan, std::ostream& out) {
    const Counts counts = count(scan.report);
    const std::size_t tests = scan.report.checks.size();
    const std::string time = seconds(scan.scanDuration);
    const std::string suite = "kelvane." + scan.projectName;
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        << "<testsuites name=\"kelvane\" tests=\"" << tests << "\" failures=\"" << counts.failures
        << "\" errors=\"" << counts.errors << "\" skipped=\"" << counts.skipped << "\" time=\""
        << time << "\">\n"
        << "  <testsuite name=\"" << escaped(suite) << "\" tests=\"" << tests << "\" failures=\""
        << counts.failures << "\" errors=\"" << counts.errors << "\" skipped=\"" << counts.skipped
        << "\" time=\"" << time << "\">\n"
        << "    <properties>\n"
        << "      <property name=\"projectPath\" value=\"" << escaped(scan.projectPath) << "\"/>\n"
        << "    </properties>\n";
    for (const CheckOutcome& check : scan.report.checks) {
        writeTestCase(check, suite, out);
    }
    out << "  </testsuite>\n</testsuites>\n";
}

std::string xmlAttributeText(std::string_view text) {
    return escaped(text);
}

} // namespace kelvane::cli
