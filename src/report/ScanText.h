#pragma once

#include "report/FinishedScan.h"
#include "report/TextStyle.h"
#include "scanner/CheckProgress.h"

#include <ostream>
#include <string>
#include <vector>

namespace kelvane::report {

// The scan as people read it: a heading, one row per check in registry
// order, the summary line, then every warning and error in full, with its
// evidence and fix.
void writeScanText(const FinishedScan& scan, std::ostream& out, const TextStyle& style = {});

// "Scanned App (w/App.xcodeproj) in 0.25 s".
[[nodiscard]] std::string scanHeading(const FinishedScan& scan, const TextStyle& style);

// What follows the rows: the summary line and the findings. The live view
// draws its own heading and rows and then writes this.
void writeScanFindings(const FinishedScan& scan, std::ostream& out, const TextStyle& style);

// The report's checks as finished progress rows.
[[nodiscard]] std::vector<CheckProgress> finishedRows(const ScanReport& report);

} // namespace kelvane::report
