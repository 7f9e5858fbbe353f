#include "scanner/ScanSummary.h"

#include <algorithm>
#include <cstddef>

namespace kelvane {

namespace {

constexpr std::string_view kPassedLabel = "Passed";
constexpr std::string_view kWarningLabel = "Warning";
constexpr std::string_view kErrorLabel = "Issue detected";
constexpr std::string_view kPartSeparator = " \u2022 ";

} // namespace

std::optional<std::string_view> statusLabel(const CheckProgress& row) noexcept {
    if (row.status != CheckStatus::completed) {
        return std::nullopt;
    }
    switch (row.issue ? row.issue->severity : Severity::success) {
    case Severity::warning:
        return kWarningLabel;
    case Severity::error:
        return kErrorLabel;
    case Severity::success:
        break;
    }
    return kPassedLabel;
}

std::string resultSummary(const std::vector<CheckProgress>& rows) {
    std::string summary;
    const auto addPart = [&](Severity severity, std::string_view noun, bool pluralises) {
        const auto count = std::count_if(rows.begin(), rows.end(), [&](const CheckProgress& row) {
            return row.issue && row.issue->severity == severity;
        });
        if (count == 0) {
            return;
        }
        if (!summary.empty()) {
            summary += kPartSeparator;
        }
        summary += std::to_string(count) + " " + std::string(noun);
        if (pluralises && count >= 2) {
            summary += 's';
        }
    };
    addPart(Severity::error, "error", true);
    addPart(Severity::warning, "warning", true);
    addPart(Severity::success, "passed", false);
    return summary;
}

} // namespace kelvane
