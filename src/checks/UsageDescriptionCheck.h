#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// Capabilities and background modes whose use always needs a key the
// Info.plist (or the entitlements) lacks: the app crashes or is rejected
// the first time it uses them. Only rules the project alone makes certain
// are kept (see kUsageRules). As built only.
struct UsageDescriptionCheck {
    [[nodiscard]] std::string id() const;
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;
};

} // namespace kelvane
