#include "selection/ProjectSelectionError.h"

namespace kelvane {
namespace {

std::string describe(ProjectSelectionError::Case errorCase, const std::string& names) {
    using Case = ProjectSelectionError::Case;
    switch (errorCase) {
    case Case::multipleWorkspacesFound:
        return "Multiple workspaces found: " + names +
               "\n\nPlease select a specific workspace directly.";
    case Case::multipleProjectsFound:
        return "Multiple projects found: " + names +
               "\n\nPlease select a specific project directly.";
    case Case::pathDoesNotExist:
        return "The selected path does not exist.";
    case Case::invalidSelection:
        return "Please select an .xcodeproj, .xcworkspace, or a folder containing a project.";
    case Case::cannotEnumerateFolder:
        return "Cannot read the contents of the selected folder.";
    case Case::noProjectsFound:
        return "No .xcodeproj or .xcworkspace found in the selected folder.";
    }
    return {};
}

} // namespace

ProjectSelectionError::ProjectSelectionError(Case errorCase, std::string names)
    : std::runtime_error(describe(errorCase, names)), case_(errorCase), names_(std::move(names)) {}

ProjectSelectionError::ProjectSelectionError(Case errorCase)
    : ProjectSelectionError(errorCase, std::string()) {}

} // namespace kelvane
