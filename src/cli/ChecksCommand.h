#pragma once

#include "checks/DoctorCheck.h"
#include "cli/CommandIO.h"

// The command line is built in the .cpp files; includers need only the name.
namespace CLI {
class App;
} // namespace CLI
#include <ostream>
#include <vector>

namespace kelvane::cli {

// One line per check, in run order: its id and its title.
void writeCheckList(const std::vector<AnyCheck>& checks, std::ostream& out);

// The same as a JSON array of {"id", "title"} objects, for scripts.
void writeCheckListJson(const std::vector<AnyCheck>& checks, std::ostream& out);

// `kelvane checks [--format text|json]`.
void addChecksCommand(CLI::App& app, CommandIO& io);

} // namespace kelvane::cli
