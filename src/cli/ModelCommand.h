#pragma once

#include "cli/CommandIO.h"

#include <CLI/CLI.hpp>
#include <string>

namespace kelvane::cli {

enum class InspectFormat { text, json };

// Loads the project at `path` (a bundle, or a folder holding one) and prints
// its model. Returns the exit status:
// clean when it loaded, "not loaded" (with the reason on `err` and nothing on
// `out`) when it did not.
int runInspect(const std::string& path, InspectFormat format, std::ostream& out, std::ostream& err);

// `kelvane inspect PATH [--format text|json]`.
void addInspectCommand(CLI::App& app, CommandIO& io);

} // namespace kelvane::cli
