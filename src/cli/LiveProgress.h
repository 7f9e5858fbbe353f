#pragma once

#include "report/FinishedScan.h"
#include "report/TextStyle.h"
#include "scanner/ScanState.h"

#include <cstddef>
#include <optional>
#include <ostream>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

// The nine rows drawn in place on a terminal while a scan runs, redrawn on
// every change of the view model's state and on every spinner tick. Nothing
// else may write to the terminal meanwhile, or the redraw lands in the wrong
// place; failing checks are therefore logged after the scan.
class LiveProgress {
public:
    LiveProgress(std::ostream& out, TextStyle style);

    // Bound to the view model as an observer: draws the state about to be
    // shown. A failed scan takes its rows off the screen again, leaving the
    // place to the error message.
    void show(const ScanState& next);
    // Moves the spinner on; does nothing once the scan has ended.
    void tick();
    [[nodiscard]] bool scanning() const noexcept { return scanning_.has_value(); }
    // Draws the final heading and rows in place of the live ones, then the
    // summary and the findings.
    void finish(const FinishedScan& scan);

private:
    void drawScanning();
    void redraw(const std::vector<std::string>& lines);
    void erase();

    std::ostream& out_;
    TextStyle style_;
    std::optional<ScanningState> scanning_;
    std::size_t frame_ = 0;
    std::size_t linesDrawn_ = 0;
};

} // namespace kelvane::cli
