#pragma once

#include "cli/CommandIO.h"

// The command line is built in the .cpp files; includers need only the name.
namespace CLI {
class App;
} // namespace CLI
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
