#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// App Store Connect warns on every upload whose extensions, widgets, watch
// app or App Clip ship other version strings than the app embedding them.
// Compares CFBundleShortVersionString and CFBundleVersion as the build writes
// them, in every configuration. As built only: read literally, it reports
// nothing.
struct EmbeddedVersionCheck {
    [[nodiscard]] std::string id() const;
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;
};

} // namespace kelvane
