#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

// An extension, widget or watch target that asks for an older OS than its app
// may fail to appear or crash there, so targets are compared with the main
// app's deployment target; without one, only agreement among the targets is
// reported.
struct DeploymentTargetMismatchCheck {
    [[nodiscard]] std::string id() const;
    // Always returns an issue.
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;

    // Whether version text `a` is lower than `b`, comparing the numeric
    // pieces between dots and dropping any piece that is not a number. When
    // one list is a prefix of the other the shorter is lower, so "16" is
    // lower than "16.0" but not the other way round.
    [[nodiscard]] static bool isLowerVersion(std::string_view a, std::string_view b);
};

} // namespace kelvane
