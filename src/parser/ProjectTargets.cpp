#include "parser/ProjectTargets.h"

#include "model/FilePath.h"
#include "parser/ObjectTable.h"
#include "parser/ParserError.h"
#include "parser/PathExists.h"

#include <array>
#include <optional>
#include <string_view>

namespace kelvane {

namespace {

using namespace std::string_view_literals;

// Pointers into the parsed document; absent is nullptr. Texts are copied once,
// into the target, and only the ones a target keeps.
struct BuildSettings {
    const std::string* infoPlist = nullptr;
    const std::string* entitlements = nullptr;
    const std::string* bundleID = nullptr;
    const std::string* developmentTeam = nullptr;
    const std::string* codeSignStyle = nullptr;
    const std::string* deploymentTarget = nullptr;
};

constexpr std::array kDeploymentTargetKeys{
    "IPHONEOS_DEPLOYMENT_TARGET"sv,
    "WATCHOS_DEPLOYMENT_TARGET"sv,
    "MACOSX_DEPLOYMENT_TARGET"sv,
    "TVOS_DEPLOYMENT_TARGET"sv,
};

BuildSettings buildSettings(const std::string* configurationListID,
                            const plist::Dictionary& objects) {
    BuildSettings settings;
    const plist::Dictionary* list = findObject(objects, configurationListID);
    if (list == nullptr) {
        return settings;
    }
    const plist::Array* configurations = findTextList(*list, "buildConfigurations");
    if (configurations == nullptr || configurations->empty()) {
        return settings;
    }
    // Only the first configuration counts, whatever its name.
    const plist::Dictionary* configuration =
        findObject(objects, configurations->front().asString());
    if (configuration == nullptr) {
        return settings;
    }
    const plist::Dictionary* values = plist::findDictionary(*configuration, "buildSettings");
    if (values == nullptr) {
        return settings;
    }
    settings.infoPlist = plist::findString(*values, "INFOPLIST_FILE");
    settings.entitlements = plist::findString(*values, "CODE_SIGN_ENTITLEMENTS");
    settings.bundleID = plist::findString(*values, "PRODUCT_BUNDLE_IDENTIFIER");
    settings.developmentTeam = plist::findString(*values, "DEVELOPMENT_TEAM");
    settings.codeSignStyle = plist::findString(*values, "CODE_SIGN_STYLE");
    for (const std::string_view key : kDeploymentTargetKeys) {
        if (const std::string* value = plist::findString(*values, key)) {
            settings.deploymentTarget = value;
            break;
        }
    }
    return settings;
}

} // namespace

std::vector<std::string> linkedFrameworks(const plist::Dictionary& target,
                                          const plist::Dictionary& objects) {
    std::vector<std::string> frameworks;
    const plist::Array* phases = findTextList(target, "buildPhases");
    if (phases == nullptr) {
        return frameworks;
    }
    for (const plist::Value& phaseID : *phases) {
        const plist::Dictionary* phase = findObject(objects, phaseID.asString());
        if (phase == nullptr) {
            continue;
        }
        const std::string* isa = plist::findString(*phase, "isa");
        if (isa == nullptr || *isa != "PBXFrameworksBuildPhase") {
            continue;
        }
        const plist::Array* files = findTextList(*phase, "files");
        if (files == nullptr) {
            continue;
        }
        for (const plist::Value& buildFileID : *files) {
            const plist::Dictionary* buildFile = findObject(objects, buildFileID.asString());
            if (buildFile == nullptr) {
                continue;
            }
            const plist::Dictionary* fileReference =
                findObject(objects, plist::findString(*buildFile, "fileRef"));
            if (fileReference == nullptr) {
                continue;
            }
            // `name` is deliberately not consulted: only the path says what is linked.
            const std::string* filePath = plist::findString(*fileReference, "path");
            if (filePath != nullptr && filePath->ends_with(".framework")) {
                frameworks.push_back(*filePath);
            }
        }
    }
    return frameworks;
}

namespace {

// A setting names a file relative to the folder that holds the .xcodeproj. It
// counts only if something is there now: a macro, an absolute path (appended
// under that folder like any other) or a moved file gives nothing, silently.
std::optional<std::string> resolveProjectFileURL(const std::string* setting,
                                                 const std::string& projectURL) {
    if (setting == nullptr) {
        return std::nullopt;
    }
    std::string candidate = path::join(path::parent(projectURL), *setting);
    if (!pathExists(candidate)) {
        return std::nullopt;
    }
    return candidate;
}

std::optional<std::string> copyOf(const std::string* text) {
    return text ? std::optional<std::string>(*text) : std::nullopt;
}

} // namespace

std::vector<TargetContext> parseTargets(const plist::Dictionary& root,
                                        const std::string& projectURL) {
    const plist::Dictionary* objects = plist::findDictionary(root, "objects");
    if (objects == nullptr) {
        throw ParserError(ParserError::Case::failedToParseTargets);
    }

    std::vector<TargetContext> targets;
    for (const plist::DictionaryEntry& entry : *objects) {
        const plist::Dictionary* object = entry.value.asDictionary();
        if (object == nullptr) {
            continue;
        }
        const std::string* isa = plist::findString(*object, "isa");
        if (isa == nullptr || *isa != "PBXNativeTarget") {
            continue;
        }
        const std::string* name = plist::findString(*object, "name");
        if (name == nullptr) {
            continue;
        }
        const BuildSettings settings =
            buildSettings(plist::findString(*object, "buildConfigurationList"), *objects);

        TargetContext target;
        target.name = *name;
        target.type = targetTypeForProductType(plist::findString(*object, "productType"));
        target.infoPlistURL = resolveProjectFileURL(settings.infoPlist, projectURL);
        target.entitlementsURL = resolveProjectFileURL(settings.entitlements, projectURL);
        target.bundleIdentifier = copyOf(settings.bundleID);
        target.linkedFrameworks = linkedFrameworks(*object, *objects);
        target.developmentTeam = copyOf(settings.developmentTeam);
        target.codeSignStyle = copyOf(settings.codeSignStyle);
        target.deploymentTarget = copyOf(settings.deploymentTarget);
        targets.push_back(std::move(target));
    }
    return targets;
}

} // namespace kelvane
