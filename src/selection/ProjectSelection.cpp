#include "selection/ProjectSelection.h"

#include "model/FilePath.h"
#include "selection/ProjectSelectionError.h"

#include <filesystem>
#include <system_error>

namespace kelvane {

std::string resolveSelection(const std::string& path) {
    std::string chosen = path::withoutTrailingSlash(path);

    // Follows links, as the file chooser does: a dangling link is nothing.
    std::error_code error;
    const auto status = std::filesystem::status(chosen, error);
    if (!std::filesystem::exists(status)) {
        throw ProjectSelectionError(ProjectSelectionError::Case::pathDoesNotExist);
    }

    const std::string_view extension = path::extension(chosen);
    if (extension == "xcodeproj" || extension == "xcworkspace") {
        return chosen;
    }
    if (std::filesystem::is_directory(status)) {
        return findProject(chosen);
    }
    throw ProjectSelectionError(ProjectSelectionError::Case::invalidSelection);
}

} // namespace kelvane
