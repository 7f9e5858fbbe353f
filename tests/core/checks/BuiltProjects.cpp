#include "BuiltProjects.h"

namespace kelvane::test {

namespace {
SettingOrigin targetLevel(SettingOrigin origin) {
    if (origin.file.empty() && origin.level.empty()) {
        origin.file = "App.xcodeproj/project.pbxproj";
        origin.level = "target";
    }
    return origin;
}
} // namespace

BuiltTarget::BuiltTarget(std::string name, TargetType type, Platform platform, TargetRole role) {
    target_.name = std::move(name);
    target_.type = type;
    target_.built = BuiltFacts{};
    target_.built->platform = platform;
    target_.built->role = role;
}

BuiltTarget& BuiltTarget::mainApp() {
    target_.built->mainApp = true;
    return *this;
}

BuiltTarget& BuiltTarget::host(std::string name) {
    target_.built->host = std::move(name);
    return *this;
}

BuiltTarget& BuiltTarget::embeds(std::vector<std::string> names) {
    target_.built->embeds = std::move(names);
    return *this;
}

BuiltTarget& BuiltTarget::bundleID(std::string value) {
    target_.bundleIdentifier = value;
    return setting("PRODUCT_BUNDLE_IDENTIFIER", std::move(value));
}

BuiltTarget& BuiltTarget::team(std::string value) {
    target_.developmentTeam = value;
    return setting("DEVELOPMENT_TEAM", std::move(value));
}

BuiltTarget& BuiltTarget::signStyle(std::string value) {
    target_.codeSignStyle = value;
    return setting("CODE_SIGN_STYLE", std::move(value));
}

BuiltTarget& BuiltTarget::deploymentTarget(std::string value) {
    target_.deploymentTarget = value;
    const char* key = target_.built->platform == Platform::watchOS ? "WATCHOS_DEPLOYMENT_TARGET"
                      : target_.built->platform == Platform::macOS ? "MACOSX_DEPLOYMENT_TARGET"
                                                                   : "IPHONEOS_DEPLOYMENT_TARGET";
    return setting(key, std::move(value));
}

BuiltTarget& BuiltTarget::frameworks(std::vector<std::string> paths) {
    target_.linkedFrameworks = std::move(paths);
    return *this;
}

BuiltTarget& BuiltTarget::setting(std::string name, std::string value, SettingOrigin origin) {
    target_.built->settings.insert_or_assign(std::move(name),
                                             TracedValue{std::move(value), targetLevel(origin)});
    return *this;
}

BuiltTarget& BuiltTarget::unknown(std::string name, std::string reason) {
    target_.built->unknown.push_back({std::move(name), std::move(reason)});
    return *this;
}

BuiltTarget& BuiltTarget::infoPlist(plist::Dictionary values) {
    target_.built->infoPlist = std::move(values);
    target_.infoPlistURL = target_.name + "/Info.plist";
    return *this;
}

BuiltTarget& BuiltTarget::entitlements(plist::Dictionary values) {
    target_.built->entitlements = std::move(values);
    target_.entitlementsURL = target_.name + "/" + target_.name + ".entitlements";
    return *this;
}

BuiltTarget& BuiltTarget::capability(std::string name, bool enabled) {
    target_.built->systemCapabilities.insert_or_assign(std::move(name), enabled);
    return *this;
}

ProjectContext builtConfiguration(std::string name, std::vector<TargetContext> targets) {
    ProjectContext context;
    context.projectURL = "App.xcodeproj";
    for (TargetContext& target : targets) {
        target.built->configuration = name;
    }
    context.targets = std::move(targets);
    context.configuration = std::move(name);
    return context;
}

ProjectContext builtProject(std::vector<ProjectContext> configurations) {
    ProjectContext shown = configurations.front();
    for (const ProjectContext& configuration : configurations) {
        shown.configurations.push_back(*configuration.configuration);
    }
    for (ProjectContext& configuration : configurations) {
        configuration.configurations = shown.configurations;
    }
    shown.resolvedConfigurations = std::move(configurations);
    return shown;
}

ProjectContext builtProject(std::vector<TargetContext> targets) {
    return builtProject({builtConfiguration("Debug", targets), builtConfiguration("Release", targets)});
}

} // namespace kelvane::test
