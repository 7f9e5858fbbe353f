#pragma once

#include "report/EvidenceLocations.h"
#include "report/FinishedScan.h"

#include <ostream>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

// Lines a Run Script build phase prints for Xcode to list in its issue
// navigator (`path: error: title`), one per warning or error. Paths stay as
// the scanned location gave them: a build phase passes an absolute one.
void writeXcodeDiagnostics(const FinishedScan& scan, const EvidenceLocations& locations, std::ostream& out);

} // namespace kelvane::cli
