#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"
#include "scanner/CheckProgress.h"

#include <memory>
#include <string>
#include <vector>

namespace kelvane {

// What a finished scan leaves behind for the results screen.
struct ProjectScanResult {
    std::string projectPath{};
    // The project's file name without its extension ("App" for App.xcodeproj).
    std::string projectName{};
    // Most severe first, registry order among equals.
    std::vector<DoctorIssue> issues{};
    // Seconds on the scan's event-loop clock, pacing included.
    double scanDuration = 0.0;
    // Every row completed.
    std::vector<CheckProgress> checkProgress{};
    // What the checks read, for reports that point at files.
    std::shared_ptr<const ProjectContext> project{};
    friend bool operator==(const ProjectScanResult&, const ProjectScanResult&) = default;
};

} // namespace kelvane
