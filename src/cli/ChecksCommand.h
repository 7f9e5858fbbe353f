#pragma once

#include "checks/DoctorCheck.h"
#include "cli/CommandIO.h"

#include <CLI/App.hpp>
#include <ostream>
#include <vector>

namespace kelvane::cli {

// One line per check, in run order: its id and its title.
void writeCheckList(const std::vector<AnyCheck>& checks, std::ostream& out);

// `kelvane checks`.
void addChecksCommand(CLI::App& app, CommandIO& io);

} // namespace kelvane::cli
