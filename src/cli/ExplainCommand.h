#pragma once

#include "cli/CommandIO.h"

#include <CLI/App.hpp>
#include <ostream>
#include <string>

namespace kelvane::cli {

// Prints the documentation page of the check `id`. An id without a page is
// a wrong command line: the ids that have one go to `err` and the status is
// "not loaded".
int runExplain(const std::string& id, std::ostream& out, std::ostream& err);

// `kelvane explain ID`.
void addExplainCommand(CLI::App& app, CommandIO& io);

} // namespace kelvane::cli
