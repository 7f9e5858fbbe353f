#pragma once

#include "report/EvidenceLocations.h"
#include "report/FinishedScan.h"

#include <ostream>

namespace kelvane::report {

// SARIF 2.1.0 as GitHub code scanning reads it: one rule per check, one
// result per warning or error, located at the files its evidence names,
// relative to the current folder. Checks that threw are tool notifications.
void writeSarifReport(const FinishedScan& scan, const EvidenceLocations& locations, std::ostream& out);

} // namespace kelvane::report
