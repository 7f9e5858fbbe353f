#pragma once

#include "diagnostics/DoctorIssue.h"

#include <optional>
#include <string>

namespace kelvane {

// One row of the progress list the screens draw while a scan runs and keep
// once it has finished.
struct CheckProgress {
    enum class CheckStatus {
        pending,
        running,
        completed,
    };

    std::string id{};
    std::string title{};
    CheckStatus status = CheckStatus::pending;
    // Absent until the check finishes, and after it when the check returned
    // nothing or threw.
    std::optional<DoctorIssue> issue{};
    friend bool operator==(const CheckProgress&, const CheckProgress&) = default;
};

using CheckStatus = CheckProgress::CheckStatus;

} // namespace kelvane
