#include "graph/AsBuiltLoading.h"

#include "graph/AsBuiltProject.h"

#include <algorithm>
#include <stdexcept>

namespace kelvane {

namespace {

AsBuiltProject loadWith(const std::string& projectPath,
                        const std::optional<std::string>& configuration, bool positions) {
    AsBuiltProject project = AsBuiltProject::load(projectPath, positions);
    if (configuration) {
        const std::vector<std::string> names = project.configurations();
        if (std::find(names.begin(), names.end(), *configuration) == names.end()) {
            std::string message =
                "No build configuration named \"" + *configuration + "\"; the project has ";
            for (std::size_t i = 0; i < names.size(); ++i) {
                message += (i == 0 ? "" : ", ") + names[i];
            }
            throw std::runtime_error(names.empty() ? message + "none" : message);
        }
    }
    return project;
}

} // namespace

ProjectContext loadAsBuilt(const std::string& projectPath,
                           const std::optional<std::string>& configuration, bool positions) {
    return loadWith(projectPath, configuration, positions).resolve(configuration);
}

ProjectContext loadAsBuiltForScan(const std::string& projectPath,
                                  const std::optional<std::string>& configuration,
                                  bool positions) {
    return loadWith(projectPath, configuration, positions).resolveForScan(configuration);
}

} // namespace kelvane
