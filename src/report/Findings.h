#pragma once

#include "report/FinishedScan.h"

#include <string>
#include <vector>

namespace kelvane::report {

// A warning or an error with the check that reported it: CI formats name the
// rule by its check id, which an issue's own id need not equal.
struct Finding {
    std::string checkID;
    const DoctorIssue* issue = nullptr;
};

// The scan's warnings and errors, most severe first (the scanner's order).
[[nodiscard]] std::vector<Finding> findings(const FinishedScan& scan);

} // namespace kelvane::report
