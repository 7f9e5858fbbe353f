#include "report/ScanJson.h"

#include "report/IssueJson.h"
#include "report/ModelJson.h"

namespace kelvane::report {

nlohmann::ordered_json toJson(const FinishedScan& scan) {
    using Json = nlohmann::ordered_json;
    Json checks = Json::array();
    for (const CheckOutcome& outcome : scan.report.checks) {
        Json row;
        row["id"] = outcome.checkID;
        row["title"] = checkDisplayTitle(outcome.checkID);
        // A failed check is finished too, as on screen; its error says why
        // it has no issue.
        row["status"] = "completed";
        row["issueId"] = outcome.issue ? Json(outcome.issue->id) : Json(nullptr);
        row["error"] = textOrNull(outcome.failure);
        checks.push_back(std::move(row));
    }
    Json issues = Json::array();
    for (const DoctorIssue& issue : scan.report.issues) {
        issues.push_back(toJson(issue));
    }

    Json json;
    json["project"] = {{"path", scan.projectPath}, {"name", scan.projectName}};
    json["scanDuration"] = scan.scanDuration;
    json["checks"] = std::move(checks);
    json["issues"] = std::move(issues);
    return json;
}

} // namespace kelvane::report
