#include "report/ProgressRowText.h"

#include "presentation/IssueText.h"

#include <algorithm>
#include <array>

namespace kelvane::report {

namespace {

constexpr std::string_view kPendingMark = "\u00B7"; // ·
constexpr std::string_view kFailedMark = "-";
constexpr std::array<std::string_view, 10> kSpinnerFrames{
    "\u280B", "\u2819", "\u2839", "\u2838", "\u283C",
    "\u2834", "\u2826", "\u2827", "\u2807", "\u280F"}; // ⠋ ⠙ ⠹ ⠸ ⠼ ⠴ ⠦ ⠧ ⠇ ⠏

} // namespace

std::string_view severityMark(Severity severity) noexcept {
    return presentation::severityGlyph(severity);
}

std::string progressRowLine(const CheckProgress& row, const TextStyle& style,
                            std::size_t spinnerFrame, std::size_t width,
                            const std::optional<std::string>& failure) {
    // A check that threw is finished without an issue, which the window
    // shows as passed; the terminal knows better and says so.
    const bool failed = failure && row.status == CheckStatus::completed;
    const presentation::RowMark mark = presentation::rowMark(row);
    std::string line = "  ";
    if (failed) {
        line += style.paint(Tone::failure, kFailedMark);
    } else if (mark.spinner) {
        line += style.paint(mark.tone, kSpinnerFrames[spinnerFrame % kSpinnerFrames.size()]);
    } else if (mark.symbol.empty()) {
        line += style.paint(mark.tone, kPendingMark);
    } else {
        line += style.paint(mark.tone, presentation::symbolGlyph(mark.symbol));
    }
    line += ' ';
    line += row.title;
    const auto label = presentation::rowStatusLabel(row);
    if (!label) {
        return line;
    }
    line += std::string(width > row.title.size() ? width - row.title.size() : 0, ' ');
    line += "  ";
    if (failed) {
        line += style.paint(Tone::failure, "Check failed: " + *failure);
    } else {
        line += style.paint(mark.tone, *label);
    }
    return line;
}

std::size_t titleWidth(const std::vector<CheckProgress>& rows) noexcept {
    std::size_t width = 0;
    for (const CheckProgress& row : rows) {
        width = std::max(width, row.title.size());
    }
    return width;
}

} // namespace kelvane::report
