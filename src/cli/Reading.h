#pragma once

#include "model/ProjectContext.h"
#include "scanner/ProjectScanner.h"

// The command line is built in the .cpp files; includers need only the name.
namespace CLI {
class App;
} // namespace CLI
#include <optional>
#include <string>

namespace kelvane::cli {

// Which reading of a project a command uses: literal (the default), or as
// Xcode builds it, for one configuration (the project's default when none
// is named).
struct Reading {
    bool asBuilt = false;
    std::optional<std::string> configuration;
};

// Loads the project at a resolved bundle path in that reading. Throws with a
// user-facing text, including for a configuration the project lacks.
[[nodiscard]] ProjectContext loadProject(const std::string& projectPath, const Reading& reading);

// The scanner's loader: as built, every configuration is resolved (or only
// the one named), since a problem may live in any of them. With `positions`
// the project also says where its build settings are written, for reports
// that point at lines.
[[nodiscard]] ProjectScanner::ProjectLoader projectLoader(const Reading& reading, bool positions);

// `--as-built` and `--configuration NAME` on a command.
void addReadingOptions(CLI::App& command, Reading& reading);

// What is wrong with a reading once every source of it is read (a
// configuration needs the as-built reading); nothing when it is sound.
[[nodiscard]] std::optional<std::string> readingProblem(const Reading& reading);

} // namespace kelvane::cli
