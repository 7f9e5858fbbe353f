#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// A widget extension that does not link WidgetKit fails at load time with
// missing symbols, so every widget target's linked frameworks are searched
// for it. Other targets are never looked at.
struct WidgetKitFrameworkCheck {
    [[nodiscard]] std::string id() const;
    // Always returns an issue.
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;
};

} // namespace kelvane
