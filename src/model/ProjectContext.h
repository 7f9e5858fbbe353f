#pragma once

#include "model/TargetContext.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvane {

// A loaded project: where its .xcodeproj is and its native targets, in the
// order their objects appear in project.pbxproj.
struct ProjectContext {
    std::string projectURL;
    std::vector<TargetContext> targets;

    // The first application target, if any.
    [[nodiscard]] const TargetContext* mainAppTarget() const noexcept;
    // Every target of one type, in target order.
    [[nodiscard]] std::vector<TargetContext> targetsOfType(TargetType type) const;

    friend bool operator==(const ProjectContext&, const ProjectContext&) = default;
};

} // namespace kelvane
