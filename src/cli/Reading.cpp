#include "cli/Reading.h"

#include <CLI/CLI.hpp>

#include "graph/AsBuiltLoading.h"
#include "parser/ProjectParser.h"

namespace kelvane::cli {

ProjectContext loadProject(const std::string& projectPath, const Reading& reading) {
    if (!reading.asBuilt) {
        return ProjectParser().parseProject(projectPath);
    }
    return loadAsBuilt(projectPath, reading.configuration);
}

ProjectScanner::ProjectLoader projectLoader(const Reading& reading, bool positions) {
    if (!reading.asBuilt) {
        return [positions](const std::string& projectPath) {
            return ProjectParser().parseProject(projectPath, positions);
        };
    }
    return [configuration = reading.configuration, positions](const std::string& projectPath) {
        return loadAsBuiltForScan(projectPath, configuration, positions);
    };
}

void addReadingOptions(CLI::App& command, Reading& reading) {
    CLI::Option* asBuilt = command.add_flag(
        "--as-built", reading.asBuilt,
        "Read the project as Xcode builds it: .xcconfig files, $(…) references, conditions, "
        "platforms and what each app embeds");
    // Not a CLI11 `needs`: a scan may take the reading from .kelvane.yml,
    // which is read after the command line.
    (void)asBuilt;
    command
        .add_option("--configuration", reading.configuration,
                    "With --as-built, the build configuration to resolve (default: the "
                    "project's default, as xcodebuild uses; a scan checks every one)")
        ->option_text("NAME");
}

std::optional<std::string> readingProblem(const Reading& reading) {
    if (reading.configuration && !reading.asBuilt) {
        return "--configuration needs --as-built";
    }
    return std::nullopt;
}

} // namespace kelvane::cli
