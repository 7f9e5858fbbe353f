#pragma once

#include <string>
#include <string_view>

#include "cli/FinishedScan.h"

#include <ostream>

namespace kelvane::cli {

// JUnit XML, the format most CI systems show as a test report: the scan is
// one suite, each check one test case. A warning or an error is a failure
// (its type says which), a check that threw is an error, a check that
// returned nothing is skipped.
void writeJUnitReport(const FinishedScan& scan, std::ostream& out);

// Text as a JUnit attribute value holds it: markup escaped, line breaks as
// character references, other control characters dropped.
[[nodiscard]] std::string xmlAttributeText(std::string_view text);

} // namespace kelvane::cli
