#pragma once

#include "diagnostics/DoctorIssue.h"
#include "scanner/CheckProgress.h"

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
    friend bool operator==(const ProjectScanResult&, const ProjectScanResult&) = default;
};

} // namespace kelvane
