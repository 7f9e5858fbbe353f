#include "report/Findings.h"

#include <algorithm>

namespace kelvane::report {

std::vector<Finding> findings(const FinishedScan& scan) {
    std::vector<Finding> result;
    for (const DoctorIssue& issue : scan.report.issues) {
        if (issue.severity == Severity::success) {
            continue;
        }
        // Each check returns at most one issue, so an issue is found by its id.
        const auto& checks = scan.report.checks;
        const auto owner = std::find_if(checks.begin(), checks.end(), [&](const CheckOutcome& c) {
            return c.issue && c.issue->id == issue.id;
        });
        result.push_back({owner == checks.end() ? issue.id : owner->checkID, &issue});
    }
    return result;
}

} // namespace kelvane::report
