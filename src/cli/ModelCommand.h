#pragma once

#include "cli/CommandIO.h"
#include "cli/Reading.h"

// The command line is built in the .cpp files; includers need only the name.
namespace CLI {
class App;
} // namespace CLI
#include <string>

namespace kelvane::cli {

enum class InspectFormat { text, json };

// Loads the project at `path` (a bundle, or a folder holding one) and prints
// its model. Returns the exit status:
// clean when it loaded, "not loaded" (with the reason on `err` and nothing on
// `out`) when it did not.
int runInspect(const std::string& path, InspectFormat format, std::ostream& out, std::ostream& err,
               const Reading& reading = {});

// `kelvane inspect PATH [--format text|json] [--as-built [--configuration NAME]]`.
void addInspectCommand(CLI::App& app, CommandIO& io);

} // namespace kelvane::cli
