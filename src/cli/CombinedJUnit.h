#pragma once

#include "cli/CombinedReport.h"

#include <ostream>
#include <vector>

namespace kelvane::cli {

// The JUnit reports of several projects as one: their suites as they were
// written, one after another, under a <testsuites> whose counts and time are
// the sums. A project that was not loaded is a suite of one test case with an
// error of type "notLoaded".
void writeCombinedJUnit(const std::vector<ProjectReport>& projects, std::ostream& out);

} // namespace kelvane::cli
