#pragma once

#include "model/ProjectContext.h"

#include <string>
#include <vector>

// Projects as the as-built reading gives them to the checks, written as
// tables: targets with their platform, role, host and resolved values.
namespace kelvane::test {

class BuiltTarget {
public:
    BuiltTarget(std::string name, TargetType type, Platform platform, TargetRole role);
    BuiltTarget& mainApp();
    BuiltTarget& host(std::string name);
    BuiltTarget& embeds(std::vector<std::string> names);
    // Each sets the shared field and the resolved setting behind it.
    BuiltTarget& bundleID(std::string value);
    BuiltTarget& team(std::string value);
    BuiltTarget& signStyle(std::string value);
    BuiltTarget& deploymentTarget(std::string value);
    BuiltTarget& frameworks(std::vector<std::string> paths);
    // Any other resolved setting, set at `origin` (a target level by default).
    BuiltTarget& setting(std::string name, std::string value, SettingOrigin origin = {});
    BuiltTarget& unknown(std::string name, std::string reason);
    BuiltTarget& infoPlist(plist::Dictionary values);
    BuiltTarget& entitlements(plist::Dictionary values);
    BuiltTarget& capability(std::string name, bool enabled);
    operator TargetContext() const { return target_; } // NOLINT: tables list BuiltTargets

private:
    TargetContext target_;
};

// One configuration of a project read as built; every target is stamped
// with the configuration's name.
[[nodiscard]] ProjectContext builtConfiguration(std::string name, std::vector<TargetContext> targets);

// What a scan hands the checks: the first configuration, with every one
// resolved beside it.
[[nodiscard]] ProjectContext builtProject(std::vector<ProjectContext> configurations);

// The same targets in Debug and Release alike.
[[nodiscard]] ProjectContext builtProject(std::vector<TargetContext> targets);

} // namespace kelvane::test
