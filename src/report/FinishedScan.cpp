#include "report/FinishedScan.h"

#include "scanner/CheckTitles.h"

namespace kelvane::report {

std::string checkDisplayTitle(const std::string& checkID) {
    return std::string(checkTitle(checkID).value_or(checkID));
}

FinishedScan finishedScan(const ProjectScanResult& result, const CheckFailures& failures) {
    FinishedScan scan{.projectPath = result.projectPath,
                      .projectName = result.projectName,
                      .scanDuration = result.scanDuration,
                      .report = {.issues = result.issues, .checks = {}, .project = result.project}};
    for (const CheckProgress& row : result.checkProgress) {
        if (row.status != CheckStatus::completed) {
            continue; // no registered check answered to it
        }
        const auto failure = failures.find(row.id);
        scan.report.checks.push_back(CheckOutcome{
            .checkID = row.id,
            .issue = row.issue,
            .failure = failure == failures.end() ? std::nullopt
                                                 : std::optional<std::string>(failure->second),
        });
    }
    return scan;
}

} // namespace kelvane::report
