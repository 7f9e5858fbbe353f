#pragma once

#include "cli/EvidenceLocations.h"
#include "cli/FinishedScan.h"

#include <ostream>

namespace kelvane::cli {

// GitHub Actions workflow commands, one per warning or error
// (`::error file=...,title=...::message`), so findings show as annotations
// on the run and on the files of a pull request.
void writeGitHubAnnotations(const FinishedScan& scan, const EvidenceLocations& locations,
                            std::ostream& out);

} // namespace kelvane::cli
