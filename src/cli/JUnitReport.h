#pragma once

#include <string>
#include <string_view>

#include "report/FinishedScan.h"

#include <ostream>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

// JUnit XML, the format most CI systems show as a test report: the scan is
// one suite, each check one test case. A warning or an error is a failure
// (its type says which), a check that threw is an error, a check that
// returned nothing is skipped.
void writeJUnitReport(const FinishedScan& scan, std::ostream& out);

// Text as a JUnit attribute value holds it: markup escaped, line breaks as
// character references, other control characters dropped.
[[nodiscard]] std::string xmlAttributeText(std::string_view text);

} // namespace kelvane::cli
