#include "cli/Reading.h"

#include "graph/AsBuiltProject.h"
#include "parser/ProjectParser.h"

#include <algorithm>
#include <stdexcept>

namespace kelvane::cli {

namespace {

// Throws when the reading names a configuration the project lacks.
void requireConfiguration(const AsBuiltProject& project, const Reading& reading) {
    if (reading.configuration) {
        const std::vector<std::string> names = project.configurations();
        if (std::find(names.begin(), names.end(), *reading.configuration) == names.end()) {
            std::string message = "No build configuration named \"" + *reading.configuration +
                                  "\"; the project has ";
            for (std::size_t i = 0; i < names.size(); ++i) {
                message += (i == 0 ? "" : ", ") + names[i];
            }
            throw std::runtime_error(names.empty() ? message + "none" : message);
        }
    }
}

ProjectContext loadForScan(const std::string& projectPath, const Reading& reading) {
    const AsBuiltProject project = AsBuiltProject::load(projectPath);
    requireConfiguration(project, reading);
    return project.resolveForScan(reading.configuration);
}

} // namespace

ProjectContext loadProject(const std::string& projectPath, const Reading& reading) {
    if (!reading.asBuilt) {
        return ProjectParser().parseProject(projectPath);
    }
    const AsBuiltProject project = AsBuiltProject::load(projectPath);
    requireConfiguration(project, reading);
    return project.resolve(reading.configuration);
}

ProjectScanner::ProjectLoader projectLoader(const Reading& reading) {
    if (!reading.asBuilt) {
        return {};
    }
    return [reading](const std::string& projectPath) { return loadForScan(projectPath, reading); };
}

void addReadingOptions(CLI::App& command, Reading& reading) {
    CLI::Option* asBuilt = command.add_flag(
        "--as-built", reading.asBuilt,
        "Read the project as Xcode builds it: .xcconfig files, $(…) references, conditions, "
        "platforms and what each app embeds");
    command
        .add_option("--configuration", reading.configuration,
                    "With --as-built, the build configuration to resolve (default: the "
                    "project's default, as xcodebuild uses)")
        ->option_text("NAME")
        ->needs(asBuilt);
}

} // namespace kelvane::cli
