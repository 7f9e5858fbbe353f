#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// Targets signed by different teams or in different styles break CI builds
// and provisioning in ways that are hard to trace, so a project whose targets
// disagree gets a warning; targets that leave a setting unset do not count as
// disagreeing.
struct SigningConsistencyCheck {
    [[nodiscard]] std::string id() const;
    // Always returns an issue.
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;
};

} // namespace kelvane
