#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// A hosted test bundle runs inside the app its TEST_HOST (or loads into the
// one its BUNDLE_LOADER) names. When no target of the project builds a
// product of that name in a configuration, the tests cannot build there.
// As built only.
struct TestHostCheck {
    [[nodiscard]] std::string id() const;
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;
};

} // namespace kelvane
