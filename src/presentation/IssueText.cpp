#include "presentation/IssueText.h"

#include "diagnostics/EvidenceSource.h"
#include "model/TargetType.h"

#include <sstream>
#include <variant>

namespace kelvane::presentation {

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

} // namespace

std::string_view symbolGlyph(std::string_view symbol) noexcept {
    if (symbol == "exclamationmark") {
        return "!";
    }
    if (symbol == "xmark") {
        return "\u2717"; // ✗
    }
    return "\u2713"; // ✓
}

std::string_view severityGlyph(Severity severity) noexcept {
    switch (severity) {
    case Severity::warning:
        return symbolGlyph("exclamationmark");
    case Severity::error:
        return symbolGlyph("xmark");
    case Severity::success:
        break;
    }
    return symbolGlyph("checkmark");
}

void writeIssueText(const DoctorIssue& issue, std::ostream& out, const TextDecoration& decoration) {
    const auto paint = [&](Tone tone, const std::string& text) {
        return decoration.paint ? decoration.paint(tone, text) : text;
    };
    const auto bold = [&](const std::string& text) {
        return decoration.bold ? decoration.bold(text) : text;
    };
    out << '\n'
        << paint(severityTone(issue.severity), std::string(severityGlyph(issue.severity)) + " " +
                                                   std::string(rawValue(issue.severity)) + ":")
        << ' ' << bold(issue.title) << " [" << issue.id << "]\n";
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

std::string issueText(const DoctorIssue& issue) {
    std::ostringstream out;
    writeIssueText(issue, out);
    std::string text = out.str();
    return text.substr(1);
}

} // namespace kelvane::presentation
