#include "parser/ProjectParser.h"

#include "model/FilePath.h"
#include "parser/ParserError.h"
#include "parser/PathExists.h"
#include "parser/ProjectTargets.h"
#include "parser/SettingPositions.h"
#include "parser/WorkspaceLocation.h"
#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"
#include "plist/Utf8.h"

namespace kelvane {

namespace {

bool isPropertyListDictionary(std::string_view bytes, const std::string& source) {
    try {
        return plist::readPropertyList(bytes, source).asDictionary() != nullptr;
    } catch (const plist::ParseError&) {
        // A normal workspace file is XML that is not a property list.
        return false;
    }
}

// The .xcodeproj that a workspace names first. Whether it exists is left to
// the caller, so a missing project reads as a missing project file.
std::string resolveWorkspace(const std::string& workspaceURL) {
    const std::string dataPath = path::join(workspaceURL, "contents.xcworkspacedata");
    if (!pathExists(dataPath)) {
        throw ParserError(ParserError::Case::workspaceParsingFailed);
    }
    const std::string bytes = plist::readFile(dataPath);
    // A workspace file that happens to be a property-list dictionary is
    // rejected on purpose, even if it mentions a project.
    if (isPropertyListDictionary(bytes, dataPath)) {
        throw ParserError(ParserError::Case::noProjectInWorkspace);
    }
    if (plist::utf8::findInvalid(bytes) != std::string_view::npos) {
        throw ParserError(ParserError::Case::workspaceParsingFailed);
    }
    const std::optional<std::string_view> location = firstProjectLocation(bytes);
    if (!location) {
        throw ParserError(ParserError::Case::noProjectInWorkspace);
    }
    // The kind prefix ("group:", "container:", "absolute:") is ignored whatever
    // it says, and enclosing groups are not combined.
    return path::join(path::parent(workspaceURL), *location);
}

} // namespace

ProjectContext ProjectParser::parseProject(const std::string& url, bool positions) const {
    const std::string location = path::withoutTrailingSlash(url);
    const std::string_view extension = path::extension(location);

    std::string projectURL;
    if (extension == "xcworkspace") {
        projectURL = resolveWorkspace(location);
    } else if (extension == "xcodeproj") {
        projectURL = location;
    } else {
        throw ParserError(ParserError::Case::invalidProjectPath);
    }

    const std::string projectFile = path::join(projectURL, "project.pbxproj");
    // A folder of that name counts as present; reading it then fails with the
    // read error, which is more telling than "not found".
    if (!pathExists(projectFile)) {
        throw ParserError(ParserError::Case::pbxprojNotFound);
    }
    // Read and parsed in one call, so a large file need not be held whole
    // beside the values built from it.
    plist::KeyPositions keys = buildSettingPositions();
    const plist::Value root =
        plist::readPropertyListFile(projectFile, {}, positions ? &keys : nullptr);
    const plist::Dictionary* dictionary = root.asDictionary();
    if (dictionary == nullptr) {
        throw ParserError(ParserError::Case::invalidPbxprojFormat);
    }
    std::vector<TargetContext> targets = parseTargets(*dictionary, projectURL);
    ProjectContext project{std::move(projectURL), std::move(targets)};
    if (const plist::Dictionary* objects = plist::findDictionary(*dictionary, "objects")) {
        project.settingPositions = settingPositions(*objects, keys, projectFile);
    }
    return project;
}

} // namespace kelvane
