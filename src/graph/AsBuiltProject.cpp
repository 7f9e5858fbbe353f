#include "graph/AsBuiltProject.h"

#include "graph/BuiltInSettings.h"
#include "graph/BuiltPlists.h"
#include "graph/EmbeddedContent.h"
#include "graph/TargetKind.h"
#include "model/FilePath.h"
#include "parser/ObjectTable.h"
#include "parser/ParserError.h"
#include "parser/PathExists.h"
#include "parser/ProjectTargets.h"
#include "parser/WorkspaceProjects.h"
#include "settings/BooleanSetting.h"
#include "settings/SettingsScope.h"
#include "settings/XcconfigReader.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace kelvane {

namespace {

using namespace std::string_view_literals;
using settings::Assignment;
using settings::Resolved;
using settings::SettingsScope;

// What a developer asks of every target, resolved and kept with its origin.
constexpr std::array kRecordedSettings{
    "PRODUCT_BUNDLE_IDENTIFIER"sv, "PRODUCT_NAME"sv,       "DEVELOPMENT_TEAM"sv,
    "CODE_SIGN_STYLE"sv,           "CODE_SIGN_ENTITLEMENTS"sv, "INFOPLIST_FILE"sv,
    "GENERATE_INFOPLIST_FILE"sv,   "SDKROOT"sv,            "MARKETING_VERSION"sv,
    "CURRENT_PROJECT_VERSION"sv,   "CLANG_MODULES_AUTOLINK"sv,
};
// Only a test bundle has a host; asking an app for one would list it as
// unknown wherever a file is missing.
constexpr std::array kTestSettings{"TEST_HOST"sv, "BUNDLE_LOADER"sv, "TEST_TARGET_NAME"sv};

struct ConfigurationList {
    std::vector<std::pair<std::string, const plist::Dictionary*>> configurations;
    std::string defaultName;

    [[nodiscard]] const plist::Dictionary* named(std::string_view name) const {
        for (const auto& [configName, configuration] : configurations) {
            if (configName == name) {
                return configuration;
            }
        }
        return nullptr;
    }
};

ConfigurationList readConfigurationList(const plist::Dictionary& objects, const std::string* id) {
    ConfigurationList list;
    const plist::Dictionary* object = findObject(objects, id);
    if (object == nullptr) {
        return list;
    }
    if (const std::string* name = plist::findString(*object, "defaultConfigurationName")) {
        list.defaultName = *name;
    }
    if (const plist::Array* ids = findTextList(*object, "buildConfigurations")) {
        for (const plist::Value& configID : *ids) {
            const plist::Dictionary* configuration = findObject(objects, configID.asString());
            const std::string* name =
                configuration ? plist::findString(*configuration, "name") : nullptr;
            if (name != nullptr) {
                list.configurations.emplace_back(*name, configuration);
            }
        }
    }
    return list;
}

// A requested name a list lacks falls back to the project's default, then to
// the list's first configuration, as xcodebuild does.
const plist::Dictionary* chooseConfiguration(const ConfigurationList& list,
                                             std::string_view requested,
                                             std::string_view projectDefault) {
    if (const plist::Dictionary* exact = list.named(requested)) {
        return exact;
    }
    if (const plist::Dictionary* fallback = list.named(projectDefault)) {
        return fallback;
    }
    return list.configurations.empty() ? nullptr : list.configurations.front().second;
}

// The .xcconfig a configuration is based on, read with its includes.
void appendBaseConfiguration(std::vector<Assignment>& stack, const plist::Dictionary& configuration,
                             const plist::Dictionary& objects, const GroupTree& groups,
                             const std::string& projectDir, const std::string& level) {
    std::optional<std::string> file;
    std::string described;
    if (const std::string* reference = plist::findString(configuration, "baseConfigurationReference")) {
        file = groups.pathOf(*reference, projectDir);
        const plist::Dictionary* object = findObject(objects, reference);
        const std::string* name = object ? plist::findString(*object, "path") : nullptr;
        described = name ? *name : *reference;
    } else if (const std::string* anchor =
                   plist::findString(configuration, "baseConfigurationReferenceAnchor")) {
        const std::string* relative =
            plist::findString(configuration, "baseConfigurationReferenceRelativePath");
        const std::optional<std::string> folder = groups.pathOf(*anchor, projectDir);
        if (folder && relative) {
            file = path::join(*folder, *relative);
        }
        described = relative ? *relative : *anchor;
    } else {
        return;
    }
    if (!file) {
        stack.push_back(Assignment{.name = "",
                                   .conditions = {},
                                   .value = "",
                                   .origin = {.file = described, .line = 0, .level = level},
                                   .unknownReason = described + " is not a file in the repository",
                                   .sparesIdentity = false});
        return;
    }
    settings::XcconfigContents contents = settings::readXcconfig(*file, level, projectDir);
    stack.insert(stack.end(), std::make_move_iterator(contents.assignments.begin()),
                 std::make_move_iterator(contents.assignments.end()));
}

void appendSettingsOf(std::vector<Assignment>& stack, const plist::Dictionary& configuration,
                      const std::string& projectFile, const std::string& level) {
    if (const plist::Dictionary* values = plist::findDictionary(configuration, "buildSettings")) {
        // The configuration is named where the value is shown; the level
        // stays the same across configurations so equal findings merge.
        settings::appendBuildSettings(stack, *values,
                                      SettingOrigin{.file = projectFile, .line = 0, .level = level});
    }
}

std::string absoluteFolder(const std::string& folder) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(folder, error);
    return error ? folder : path::withoutTrailingSlash(absolute.lexically_normal().string());
}

// A file a setting names, shown under the folder the user's path led to.
// Nothing when the setting is empty or nothing is there.
std::optional<std::string> namedFile(const std::string& value, const std::string& sourceRoot,
                                     const std::string& projectDir) {
    if (value.empty()) {
        return std::nullopt;
    }
    std::string candidate;
    if (value.starts_with(sourceRoot + "/")) {
        candidate = path::join(projectDir, value.substr(sourceRoot.size() + 1));
    } else if (value.starts_with('/')) {
        candidate = value;
    } else {
        candidate = path::join(projectDir, value);
    }
    return pathExists(candidate) ? std::optional<std::string>(candidate) : std::nullopt;
}

std::optional<std::string> nonEmpty(const TracedValue* value) {
    return value && !value->value.empty() ? std::optional<std::string>(value->value) : std::nullopt;
}

// The names assigned anywhere in the stack, each once, in first-seen order.
std::vector<std::string> assignedNames(const std::vector<Assignment>& stack) {
    std::vector<std::string> names;
    std::unordered_map<std::string_view, bool> seen;
    for (const Assignment& assignment : stack) {
        if (!assignment.isPlaceholder() && seen.emplace(assignment.name, true).second) {
            names.push_back(assignment.name);
        }
    }
    return names;
}

struct ProjectLevel {
    const ProjectFile& file;
    const plist::Dictionary& objects;
    const GroupTree& groups;
    std::string projectDir;
    std::string sourceRoot;
    std::string projectName;
    std::string configuration;      // CONFIGURATION: the project configuration's name
    std::string requested;          // what the target lists are asked for
    std::string projectDefault;
    std::vector<Assignment> assignments;
    const plist::Dictionary* targetAttributes = nullptr;
};

void record(BuiltFacts& facts, std::string_view name, const Resolved& resolved) {
    if (resolved.unknownReason) {
        facts.unknown.push_back({std::string(name), *resolved.unknownReason});
    } else if (resolved.assigned) {
        facts.settings.emplace(std::string(name),
                               TracedValue{resolved.value, resolved.origin.value_or(SettingOrigin{})});
    }
}

TargetContext resolveTarget(const ProjectLevel& project, const std::string& targetID,
                            const plist::Dictionary& target) {
    TargetContext context;
    context.name = *plist::findString(target, "name");
    BuiltFacts facts;
    facts.project = project.file.projectURL;
    const std::string* productType = plist::findString(target, "productType");
    facts.productType = productType ? *productType : "";

    const ConfigurationList list =
        readConfigurationList(project.objects, plist::findString(target, "buildConfigurationList"));
    const plist::Dictionary* configuration =
        chooseConfiguration(list, project.requested, project.projectDefault);
    facts.configuration = project.configuration;

    const std::string projectFile = path::join(project.file.projectURL, "project.pbxproj");
    BuiltInContext builtIns{.projectName = project.projectName,
                            .sourceRoot = project.sourceRoot,
                            .projectFilePath = path::join(project.sourceRoot,
                                                          path::lastComponent(project.file.projectURL)),
                            .configuration = project.configuration,
                            .targetName = context.name,
                            .productType = facts.productType,
                            .platform = Platform::unknown};
    std::vector<Assignment> levels = project.assignments;
    const std::vector<Assignment> derived = targetDerivedSettings(builtIns);
    levels.insert(levels.end(), derived.begin(), derived.end());
    if (configuration != nullptr) {
        appendBaseConfiguration(levels, *configuration, project.objects, project.groups,
                                project.projectDir, "target xcconfig");
        appendSettingsOf(levels, *configuration, projectFile, "target");
    }

    const auto stackFor = [&](Platform platform) {
        builtIns.platform = platform;
        std::vector<Assignment> stack = builtInSettings(builtIns);
        stack.insert(stack.end(), levels.begin(), levels.end());
        return stack;
    };
    // SDKROOT decides the platform, and the platform which `sdk` conditions
    // match, so it is read first with only the configuration bound.
    {
        const SettingsScope first(stackFor(Platform::unknown), {{"config", project.configuration}});
        const Resolved sdkRoot = first.evaluate("SDKROOT");
        const bool multiplatform = !sdkRoot.unknownReason && (sdkRoot.value.empty() || sdkRoot.value == "auto");
        const Resolved supported =
            multiplatform ? first.evaluate("SUPPORTED_PLATFORMS") : Resolved{};
        facts.platform = platformOfSDK(sdkRoot.unknownReason ? "" : sdkRoot.value,
                                       supported.unknownReason ? "" : supported.value);
        if (multiplatform) {
            record(facts, "SUPPORTED_PLATFORMS", supported);
        }
    }
    std::vector<Assignment> stack = stackFor(facts.platform);
    const std::vector<std::string> names = assignedNames(stack);
    const SettingsScope scope(std::move(stack),
                              {{"config", project.configuration},
                               {"sdk", std::string(deviceSDKName(facts.platform))}});

    for (const std::string_view name : kRecordedSettings) {
        record(facts, name, scope.evaluate(name));
    }
    if (intrinsicRole(facts.productType) == TargetRole::testBundle) {
        for (const std::string_view name : kTestSettings) {
            record(facts, name, scope.evaluate(name));
        }
    }
    const std::string_view deploymentKey = deploymentTargetSetting(facts.platform);
    if (!deploymentKey.empty()) {
        record(facts, deploymentKey, scope.evaluate(deploymentKey));
    }
    for (const std::string& name : names) {
        if (name.starts_with("INFOPLIST_KEY_")) {
            record(facts, name, scope.evaluate(name));
        }
    }
    // A name nothing assigns stands for every generated key nobody set here:
    // unknown exactly when a missing file could set such keys.
    if (const Resolved unassigned = scope.evaluate("INFOPLIST_KEY_"); unassigned.unknownReason) {
        facts.generatedKeysUnknown = unassigned.unknownReason;
    }
    const plist::Dictionary* attributes =
        project.targetAttributes ? plist::findDictionary(*project.targetAttributes, targetID) : nullptr;
    if (const plist::Dictionary* capabilities =
            attributes ? plist::findDictionary(*attributes, "SystemCapabilities") : nullptr) {
        for (const plist::DictionaryEntry& capability : *capabilities) {
            const plist::Dictionary* state = capability.value.asDictionary();
            const plist::Value* enabled = state ? state->find("enabled") : nullptr;
            if (enabled != nullptr && enabled->asString() != nullptr) {
                facts.systemCapabilities.emplace(capability.key, *enabled->asString() != "0");
            } else if (enabled != nullptr && enabled->asInteger() != nullptr) {
                facts.systemCapabilities.emplace(capability.key, *enabled->asInteger() != 0);
            }
        }
    }
    // An empty style leaves it to the per-target choice Xcode keeps in the
    // project's target attributes.
    if (!nonEmpty(facts.setting("CODE_SIGN_STYLE")) && attributes != nullptr) {
        const std::string* style =
            attributes ? plist::findString(*attributes, "ProvisioningStyle") : nullptr;
        if (style != nullptr) {
            facts.settings.insert_or_assign(
                "CODE_SIGN_STYLE",
                TracedValue{*style, SettingOrigin{projectFile, 0, "target attributes"}});
        }
    }

    const auto file = [&](std::string_view name) -> std::optional<std::string> {
        const TracedValue* value = facts.setting(name);
        return value ? namedFile(value->value, project.sourceRoot, project.projectDir) : std::nullopt;
    };
    context.infoPlistURL = file("INFOPLIST_FILE");
    context.entitlementsURL = file("CODE_SIGN_ENTITLEMENTS");

    const TracedValue* generate = facts.setting("GENERATE_INFOPLIST_FILE");
    const bool generated = generate && settings::isYes(generate->value);
    BuiltPlist info = builtInfoPlist(context.infoPlistURL, generated, scope, names);
    facts.infoPlist = std::move(info.dictionary);
    facts.infoPlistError = std::move(info.error);
    facts.unknown.insert(facts.unknown.end(), info.unknown.begin(), info.unknown.end());

    context.bundleIdentifier = nonEmpty(facts.setting("PRODUCT_BUNDLE_IDENTIFIER"));
    if (!context.bundleIdentifier && facts.infoPlist) {
        const std::string* own = plist::findString(*facts.infoPlist, "CFBundleIdentifier");
        if (own != nullptr && !own->empty()) {
            context.bundleIdentifier = *own;
        }
    }
    context.developmentTeam = nonEmpty(facts.setting("DEVELOPMENT_TEAM"));
    context.codeSignStyle = nonEmpty(facts.setting("CODE_SIGN_STYLE"));
    if (!deploymentKey.empty()) {
        context.deploymentTarget = nonEmpty(facts.setting(deploymentKey));
    }

    ExtraValues extra;
    if (context.bundleIdentifier) {
        extra.emplace("CFBundleIdentifier", *context.bundleIdentifier);
    }
    const std::string prefix = context.developmentTeam ? *context.developmentTeam + "." : "";
    extra.emplace("TeamIdentifierPrefix", prefix);
    extra.emplace("AppIdentifierPrefix", prefix);
    BuiltPlist entitlements = builtEntitlements(context.entitlementsURL, scope, extra);
    facts.entitlements = std::move(entitlements.dictionary);
    facts.entitlementsError = std::move(entitlements.error);
    facts.unknown.insert(facts.unknown.end(), entitlements.unknown.begin(),
                         entitlements.unknown.end());

    context.type = builtTargetType(facts.productType, facts.platform,
                                   facts.infoPlist ? &*facts.infoPlist : nullptr);
    context.linkedFrameworks = linkedFrameworks(target, project.objects);
    // A setting behind several fields (PRODUCT_NAME names the bundle and the
    // generated CFBundleName) is listed once.
    std::vector<UnknownSetting> unknown;
    for (UnknownSetting& setting : facts.unknown) {
        const bool listed = std::any_of(unknown.begin(), unknown.end(), [&](const UnknownSetting& u) {
            return u.name == setting.name;
        });
        if (!listed) {
            unknown.push_back(std::move(setting));
        }
    }
    facts.unknown = std::move(unknown);
    context.built = std::move(facts);
    return context;
}

std::vector<TargetContext> resolveProject(const ProjectFile& file,
                                          const std::optional<std::string>& requested) {
    const plist::Dictionary& objects = file.objects();
    const plist::Dictionary* projectObject = file.project();
    const GroupTree groups(objects);
    const ConfigurationList projectList = readConfigurationList(
        objects, projectObject ? plist::findString(*projectObject, "buildConfigurationList") : nullptr);
    std::string projectDefault = projectList.defaultName;
    if (!projectList.named(projectDefault) && !projectList.configurations.empty()) {
        projectDefault = projectList.configurations.front().first;
    }
    const std::string wanted = requested.value_or(projectDefault);

    const std::string projectDir = path::parent(file.projectURL);
    ProjectLevel level{.file = file,
                       .objects = objects,
                       .groups = groups,
                       .projectDir = projectDir,
                       .sourceRoot = absoluteFolder(projectDir),
                       .projectName = std::string(path::stem(file.projectURL)),
                       .configuration = projectList.named(wanted) ? wanted : projectDefault,
                       .requested = wanted,
                       .projectDefault = projectDefault,
                       .assignments = {},
                       .targetAttributes = nullptr};
    if (projectObject != nullptr) {
        if (const plist::Dictionary* attributes = plist::findDictionary(*projectObject, "attributes")) {
            level.targetAttributes = plist::findDictionary(*attributes, "TargetAttributes");
        }
    }
    if (const plist::Dictionary* configuration =
            chooseConfiguration(projectList, wanted, projectDefault)) {
        appendBaseConfiguration(level.assignments, *configuration, objects, groups, projectDir,
                                "project xcconfig");
        appendSettingsOf(level.assignments, *configuration,
                         path::join(file.projectURL, "project.pbxproj"), "project");
    }

    // The developer's order is the project's `targets` list; without one,
    // the object table's.
    std::vector<std::string> order;
    if (const plist::Array* listed = projectObject ? findTextList(*projectObject, "targets") : nullptr) {
        for (const plist::Value& id : *listed) {
            order.push_back(*id.asString());
        }
    } else {
        for (const plist::DictionaryEntry& entry : objects) {
            order.push_back(entry.key);
        }
    }
    std::vector<TargetContext> targets;
    std::vector<const plist::Dictionary*> objectsOfTargets;
    for (const std::string& id : order) {
        const plist::Dictionary* target = findObject(objects, &id);
        if (target == nullptr || isaOf(*target) != "PBXNativeTarget" ||
            plist::findString(*target, "name") == nullptr) {
            continue;
        }
        targets.push_back(resolveTarget(level, id, *target));
        objectsOfTargets.push_back(target);
    }
    connectTargets(targets, objectsOfTargets, objects);
    return targets;
}

} // namespace

AsBuiltProject AsBuiltProject::load(const std::string& url, bool positions) {
    const std::string location = path::withoutTrailingSlash(url);
    const std::string_view extension = path::extension(location);
    AsBuiltProject project;
    if (extension == "xcodeproj") {
        project.projects_.push_back(readProjectFile(location, positions));
        return project;
    }
    if (extension != "xcworkspace") {
        throw ParserError(ParserError::Case::invalidProjectPath);
    }
    const std::vector<std::string> listed = workspaceProjects(location);
    if (listed.empty()) {
        throw ParserError(ParserError::Case::noProjectInWorkspace);
    }
    std::optional<std::exception_ptr> firstFailure;
    for (const std::string& projectURL : listed) {
        try {
            project.projects_.push_back(readProjectFile(projectURL, positions));
        } catch (const std::exception&) {
            if (!firstFailure) {
                firstFailure = std::current_exception();
            }
        }
    }
    if (project.projects_.empty()) {
        std::rethrow_exception(*firstFailure);
    }
    return project;
}

std::vector<std::string> AsBuiltProject::configurations() const {
    const ProjectFile& first = projects_.front();
    const plist::Dictionary* projectObject = first.project();
    const ConfigurationList list = readConfigurationList(
        first.objects(),
        projectObject ? plist::findString(*projectObject, "buildConfigurationList") : nullptr);
    std::vector<std::string> names;
    for (const auto& [name, configuration] : list.configurations) {
        names.push_back(name);
    }
    return names;
}

std::string AsBuiltProject::defaultConfiguration() const {
    const ProjectFile& first = projects_.front();
    const plist::Dictionary* projectObject = first.project();
    const ConfigurationList list = readConfigurationList(
        first.objects(),
        projectObject ? plist::findString(*projectObject, "buildConfigurationList") : nullptr);
    if (list.named(list.defaultName) || list.configurations.empty()) {
        return list.defaultName;
    }
    return list.configurations.front().first;
}

ProjectContext AsBuiltProject::resolve(const std::optional<std::string>& configuration) const {
    ProjectContext context;
    context.configuration = configuration.value_or(defaultConfiguration());
    context.configurations = configurations();
    context.projectURL = projects_.front().projectURL;
    bool appFound = false;
    for (const ProjectFile& file : projects_) {
        std::vector<TargetContext> targets = resolveProject(file, context.configuration);
        const bool hasApp = std::any_of(targets.begin(), targets.end(), [](const TargetContext& t) {
            return t.built->role == TargetRole::app;
        });
        // A workspace that lists its Pods project first still means the app.
        if (hasApp && !appFound) {
            context.projectURL = file.projectURL;
            appFound = true;
        }
        context.targets.insert(context.targets.end(), std::make_move_iterator(targets.begin()),
                               std::make_move_iterator(targets.end()));
        context.settingPositions.insert(context.settingPositions.end(),
                                        file.settingPositions.begin(), file.settingPositions.end());
    }
    return context;
}

} // namespace kelvane

namespace kelvane {

ProjectContext AsBuiltProject::resolveForScan(const std::optional<std::string>& only) const {
    const std::string shown = only.value_or(defaultConfiguration());
    std::vector<ProjectContext> resolved;
    std::optional<std::size_t> shownIndex;
    for (const std::string& name : only ? std::vector<std::string>{*only} : configurations()) {
        if (name == shown) {
            shownIndex = resolved.size();
        }
        resolved.push_back(resolve(name));
    }
    ProjectContext context = shownIndex ? resolved[*shownIndex] : resolve(shown);
    // Positions belong to the files, the same in every configuration.
    for (ProjectContext& each : resolved) {
        each.settingPositions.clear();
    }
    context.resolvedConfigurations = std::move(resolved);
    return context;
}

} // namespace kelvane
