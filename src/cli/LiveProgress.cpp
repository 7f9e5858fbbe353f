#include "cli/LiveProgress.h"

#include "report/ProgressRowText.h"
#include "report/ScanText.h"
#include "model/FilePath.h"

#include <string>
#include <vector>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

namespace {

// Back to the first column of the line `count` lines up.
std::string linesUp(std::size_t count) {
    return "\x1b[" + std::to_string(count) + "F";
}
constexpr std::string_view kClearLine = "\x1b[2K";
constexpr std::string_view kClearBelow = "\x1b[J";

} // namespace

LiveProgress::LiveProgress(std::ostream& out, TextStyle style) : out_(out), style_(style) {}

void LiveProgress::show(const ScanState& next) {
    if (const auto* scanning = std::get_if<ScanningState>(&next)) {
        scanning_ = *scanning;
        drawScanning();
        return;
    }
    scanning_.reset();
    if (std::holds_alternative<ErrorState>(next)) {
        erase();
    }
    // A completed scan keeps its last rows until finish() draws them with
    // what only the command knows (the failures of single checks).
}

void LiveProgress::tick() {
    if (scanning_) {
        ++frame_;
        drawScanning();
    }
}

void LiveProgress::drawScanning() {
    const std::vector<CheckProgress>& rows = scanning_->checkProgress;
    const std::string name(path::stem(path::withoutTrailingSlash(scanning_->projectPath)));
    // "Scanning App (w/App.xcodeproj)  3/9", in the window's words.
    std::vector<std::string> lines{style_.bold(std::string(presentation::scanTitle(true)) + " " + name) +
                                       " (" + scanning_->projectPath + ")  " +
                                       style_.paint(Tone::muted, presentation::scanSubtitle(rows, true)),
                                   ""};
    const std::size_t width = titleWidth(rows);
    for (const CheckProgress& row : rows) {
        lines.push_back(progressRowLine(row, style_, frame_, width));
    }
    redraw(lines);
}

void LiveProgress::finish(const FinishedScan& scan) {
    std::vector<std::string> lines{scanHeading(scan, style_), ""};
    const std::vector<CheckProgress> rows = finishedRows(scan.report);
    const std::size_t width = titleWidth(rows);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        lines.push_back(progressRowLine(rows[i], style_, 0, width, scan.report.checks[i].failure));
    }
    redraw(lines);
    linesDrawn_ = 0;
    writeScanFindings(scan, out_, style_);
    out_.flush();
}

void LiveProgress::redraw(const std::vector<std::string>& lines) {
    if (linesDrawn_ > 0) {
        out_ << linesUp(linesDrawn_);
    }
    for (const std::string& line : lines) {
        out_ << kClearLine << line << '\n';
    }
    // Fewer lines than last time would leave old ones standing.
    out_ << kClearBelow;
    linesDrawn_ = lines.size();
    out_.flush();
}

void LiveProgress::erase() {
    if (linesDrawn_ > 0) {
        out_ << linesUp(linesDrawn_) << kClearBelow;
        linesDrawn_ = 0;
        out_.flush();
    }
}

} // namespace kelvane::cli
