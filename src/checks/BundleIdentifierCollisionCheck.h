#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// Two targets with one bundle identifier overwrite each other on a device, so
// every shared identifier is an error; the fix keeps the first target's and
// derives a new one from the target's name for each of the others.
struct BundleIdentifierCollisionCheck {
    [[nodiscard]] std::string id() const;
    // Always returns an issue.
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;
};

} // namespace kelvane
