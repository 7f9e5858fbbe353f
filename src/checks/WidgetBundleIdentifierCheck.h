#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// iOS installs a widget extension only when its bundle identifier sits under
// the app's: the app's identifier, a dot, and a suffix. Without an app or an
// app bundle identifier there is nothing to measure against, and the check
// returns no issue at all.
struct WidgetBundleIdentifierCheck {
    [[nodiscard]] std::string id() const;
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;
};

} // namespace kelvane
