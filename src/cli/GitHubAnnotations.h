#pragma once

#include "report/EvidenceLocations.h"
#include "report/FinishedScan.h"

#include <ostream>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

// GitHub Actions workflow commands, one per warning or error
// (`::error file=...,title=...::message`), so findings show as annotations
// on the run and on the files of a pull request.
void writeGitHubAnnotations(const FinishedScan& scan, const EvidenceLocations& locations,
                            std::ostream& out);

} // namespace kelvane::cli
