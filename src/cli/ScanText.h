#pragma once

#include "cli/FinishedScan.h"

#include <ostream>

namespace kelvane::cli {

// The scan as people read it: one line per check in registry order, then
// every warning and error in full, with its evidence and fix.
void writeScanText(const FinishedScan& scan, std::ostream& out);

} // namespace kelvane::cli
