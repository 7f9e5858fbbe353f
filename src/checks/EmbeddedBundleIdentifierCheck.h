#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// App Store validation rejects an upload in which two bundles inside one app
// (the app, its extensions, frameworks, watch content, App Clip) share a
// bundle id. As built only.
struct EmbeddedBundleIdentifierCheck {
    [[nodiscard]] std::string id() const;
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;
};

} // namespace kelvane
