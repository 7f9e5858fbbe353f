#include "parser/ParserError.h"

#include <string>

namespace kelvane {

ParserError::ParserError(Case errorCase)
    : std::runtime_error(std::string(description(errorCase))), case_(errorCase) {}

std::string_view ParserError::description(Case errorCase) noexcept {
    switch (errorCase) {
    case Case::invalidProjectPath:
        return "Invalid .xcodeproj or .xcworkspace path";
    case Case::pbxprojNotFound:
        return "project.pbxproj not found";
    case Case::invalidPbxprojFormat:
        return "Could not parse project.pbxproj";
    case Case::failedToParseTargets:
        return "Failed to extract targets from project";
    case Case::workspaceParsingFailed:
        return "Failed to parse .xcworkspace";
    case Case::noProjectInWorkspace:
        return "No .xcodeproj found in workspace";
    }
    return {};
}

} // namespace kelvane
