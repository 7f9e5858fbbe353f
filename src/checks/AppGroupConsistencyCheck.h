#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// Warns when the targets that use app groups do not all declare the main
// app's groups, or when extensions declare groups and the main app none.
struct AppGroupConsistencyCheck {
    // The entitlement whose value lists the app groups.
    std::string appGroupKey;

    [[nodiscard]] std::string id() const { return "app.group.consistency"; }
    // Throws when an existing entitlements file cannot be read or parsed.
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;

    friend bool operator==(const AppGroupConsistencyCheck&,
                           const AppGroupConsistencyCheck&) = default;
};

} // namespace kelvane
