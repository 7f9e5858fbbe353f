#include "cli/Reading.h"

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
    command
        .add_option("--configuration", reading.configuration,
                    "With --as-built, the build configuration to resolve (default: the "
                    "project's default, as xcodebuild uses; a scan checks every one)")
        ->option_text("NAME")
        ->needs(asBuilt);
}

} // namespace kelvane::cli
