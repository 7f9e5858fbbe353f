#pragma once

#include "cli/ScanCommand.h"

#include <ostream>
#include <string>
#include <vector>

namespace kelvane::cli {

// `kelvane scan PATH` with PATH taken as a developer means it
// (repositoryProjects): a bundle as it is, a folder's one top-level project,
// or, with more than one, exit status 2 and every candidate listed with how
// to choose. runScan keeps the window's rule for the folders it is given.
int runRepositoryScan(const std::string& path, bool all, const ScanOptions& options,
                      std::ostream& out, std::ostream& err, std::vector<AnyCheck> checks);

// `--all`: every top-level project beneath PATH, each scanned as a single
// project is (scanLocation), in one report of the options' format. A project that is not
// loaded is reported (and its reason written on `err`) and the others go on.
// The exit status is the worst of the projects': not loaded, then findings,
// then clean.
int runScanAll(const std::string& path, const ScanOptions& options, std::ostream& out,
               std::ostream& err, const std::vector<AnyCheck>& checks);

} // namespace kelvane::cli
