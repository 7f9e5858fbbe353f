#pragma once

#include "report/CheckFailures.h"
#include "scanner/ProjectScanResult.h"
#include "scanner/ProjectScanner.h"

#include <string>

namespace kelvane::report {

// One scan as the terminal reports it.
struct FinishedScan {
    // The location that was scanned, as the user gave it (after folder
    // resolution), and its last component without the extension.
    std::string projectPath;
    std::string projectName;
    // Wall-clock seconds from the start of the scan to its end.
    double scanDuration = 0;
    ScanReport report;
};

// The report's view of a completed scan: the rows the scanner reported (in
// registry order) with the failure of each check that threw. The window keeps
// no record of failures, so its checks that threw read as finished without an
// issue, as they do on its screen.
[[nodiscard]] FinishedScan finishedScan(const ProjectScanResult& result,
                                        const CheckFailures& failures = {});

// A check's display title; its id when it has none (a check the title list
// does not know).
[[nodiscard]] std::string checkDisplayTitle(const std::string& checkID);

} // namespace kelvane::report
