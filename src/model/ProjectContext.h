#pragma once

#include "model/SettingPosition.h"
#include "model/TargetContext.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvane {

// A loaded project: where its .xcodeproj is and its native targets. Read
// literally, targets come in the order their objects appear in
// project.pbxproj; read as built, in the project's own `targets` order (every
// project of a workspace, in the order it lists them), resolved for one
// configuration.
struct ProjectContext {
    std::string projectURL;
    std::vector<TargetContext> targets;
    // As built only: the configuration resolved and every one the project has.
    std::optional<std::string> configuration{};
    std::vector<std::string> configurations{};
    // As built, for a scan: the project resolved for every configuration it
    // checks, in the project's order (this one among them). Empty otherwise.
    std::vector<ProjectContext> resolvedConfigurations{};
    // Every build setting's place in the project file, in file order, for
    // reports that point at lines; only a load that asked for it has them.
    std::vector<SettingPosition> settingPositions{};

    // Read literally, the first application target; as built, the main app a
    // developer means (the iOS one where there are several platforms).
    [[nodiscard]] const TargetContext* mainAppTarget() const noexcept;
    // Every target of one type, in target order.
    [[nodiscard]] std::vector<TargetContext> targetsOfType(TargetType type) const;

    friend bool operator==(const ProjectContext&, const ProjectContext&) = default;
};

} // namespace kelvane
