#pragma once

#include "cli/FinishedScan.h"

#include <ostream>

namespace kelvane::cli {

// JUnit XML, the format most CI systems show as a test report: the scan is
// one suite, each check one test case. A warning or an error is a failure
// (its type says which), a check that threw is an error, a check that
// returned nothing is skipped.
void writeJUnitReport(const FinishedScan& scan, std::ostream& out);

} // namespace kelvane::cli
