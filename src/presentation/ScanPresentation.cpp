#include "presentation/ScanPresentation.h"

#include <algorithm>
#include <cstddef>

namespace kelvane::presentation {

namespace {

constexpr std::string_view kScanningTitle = "Scanning";
constexpr std::string_view kCompleteTitle = "Scan Complete";
constexpr std::string_view kPassedLabel = "Passed";
constexpr std::string_view kWarningLabel = "Warning";
constexpr std::string_view kErrorLabel = "Issue detected";
constexpr std::string_view kPartSeparator = " \u2022 ";

constexpr std::string_view kCheckmark = "checkmark";
constexpr std::string_view kExclamationmark = "exclamationmark";
constexpr std::string_view kXmark = "xmark";

// Passed rows and rows without an issue look the same.
Severity shownSeverity(const CheckProgress& row) noexcept {
    return row.issue ? row.issue->severity : Severity::success;
}

std::size_t countRows(const std::vector<CheckProgress>& rows, Severity severity) {
    return static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), [&](const auto& row) {
        return row.issue && row.issue->severity == severity;
    }));
}

} // namespace

Tone severityTone(Severity severity) noexcept {
    switch (severity) {
    case Severity::warning:
        return Tone::warning;
    case Severity::error:
        return Tone::failure;
    case Severity::success:
        break;
    }
    return Tone::success;
}

RowMark rowMark(const CheckProgress& row) noexcept {
    switch (row.status) {
    case CheckStatus::pending:
        return RowMark{.tone = Tone::muted};
    case CheckStatus::running:
        return RowMark{.tone = Tone::accent, .spinner = true};
    case CheckStatus::completed:
        break;
    }
    switch (shownSeverity(row)) {
    case Severity::warning:
        return RowMark{.tone = Tone::warning, .symbol = kExclamationmark};
    case Severity::error:
        return RowMark{.tone = Tone::failure, .symbol = kXmark};
    case Severity::success:
        break;
    }
    return RowMark{.tone = Tone::success, .symbol = kCheckmark};
}

std::optional<std::string_view> rowStatusLabel(const CheckProgress& row) noexcept {
    if (row.status != CheckStatus::completed) {
        return std::nullopt;
    }
    switch (shownSeverity(row)) {
    case Severity::warning:
        return kWarningLabel;
    case Severity::error:
        return kErrorLabel;
    case Severity::success:
        break;
    }
    return kPassedLabel;
}

std::string rowAccessibleName(const CheckProgress& row) {
    std::string name = row.title + ", ";
    if (const auto label = rowStatusLabel(row)) {
        name += *label;
    } else {
        name += row.status == CheckStatus::running ? "Running" : "Pending";
    }
    return name;
}

std::string_view scanTitle(bool isScanning) noexcept {
    return isScanning ? kScanningTitle : kCompleteTitle;
}

std::string scanSubtitle(const std::vector<CheckProgress>& rows, bool isScanning) {
    if (isScanning) {
        const auto finished = std::count_if(rows.begin(), rows.end(), [](const auto& row) {
            return row.status == CheckStatus::completed;
        });
        return std::to_string(finished) + "/" + std::to_string(rows.size());
    }
    std::string subtitle;
    const auto addPart = [&](std::size_t count, std::string_view noun, bool pluralises) {
        if (count == 0) {
            return;
        }
        if (!subtitle.empty()) {
            subtitle += kPartSeparator;
        }
        subtitle += std::to_string(count);
        subtitle += ' ';
        subtitle += noun;
        if (pluralises && count >= 2) {
            subtitle += 's';
        }
    };
    addPart(countRows(rows, Severity::error), "error", true);
    addPart(countRows(rows, Severity::warning), "warning", true);
    addPart(countRows(rows, Severity::success), "passed", false);
    return subtitle;
}

} // namespace kelvane::presentation
