#include "report/SarifReport.h"

#include "report/Findings.h"
#include "report/ModelJson.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace kelvane::report {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kSchema = "https://json.schemastore.org/sarif-2.1.0.json";

// An artifact location is a URI reference: file names with spaces
// ("Nimbus WatchKit App/Info.plist") must be percent-encoded.
std::string uriReference(std::string_view path) {
    std::string uri;
    for (const unsigned char c : path) {
        const bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                           (c >= '0' && c <= '9') ||
                           std::string_view("-._~/").find(c) != std::string_view::npos;
        if (plain) {
            uri += static_cast<char>(c);
        } else {
            char escaped[4];
            std::snprintf(escaped, sizeof escaped, "%%%02X", c);
            uri += escaped;
        }
    }
    return uri;
}

std::string message(const DoctorIssue& issue) {
    return issue.title + "\n\n" + issue.description + "\n\nImpact: " + issue.impact;
}

Json rules(const FinishedScan& scan) {
    Json rules = Json::array();
    for (const CheckOutcome& check : scan.report.checks) {
        const std::string title = checkDisplayTitle(check.checkID);
        Json rule;
        rule["id"] = check.checkID;
        rule["name"] = title;
        rule["shortDescription"] = {{"text", title}};
        rules.push_back(std::move(rule));
    }
    return rules;
}

Json locations(const DoctorIssue& issue, const EvidenceLocations& places) {
    Json locations = Json::array();
    for (const EvidenceLocation& place : places.locationsFor(issue)) {
        Json physical;
        physical["artifactLocation"] = {
            {"uri", uriReference(relativeToCurrentFolder(place.file))}};
        // Where no line is known, line 1 stands for the whole file, which
        // GitHub needs to place an alert at all.
        Json region = {{"startLine", place.line == 0 ? 1 : place.line}};
        if (place.column != 0) {
            region["startColumn"] = place.column;
        }
        physical["region"] = std::move(region);
        locations.push_back({{"physicalLocation", std::move(physical)}});
    }
    return locations;
}

} // namespace

void writeSarifReport(const FinishedScan& scan, const EvidenceLocations& places,
                      std::ostream& out) {
    Json results = Json::array();
    const auto& checks = scan.report.checks;
    for (const Finding& finding : findings(scan)) {
        const auto rule = std::find_if(checks.begin(), checks.end(), [&](const CheckOutcome& c) {
            return c.checkID == finding.checkID;
        });
        Json result;
        result["ruleId"] = finding.checkID;
        if (rule != checks.end()) {
            result["ruleIndex"] = rule - checks.begin();
        }
        result["level"] = std::string(rawValue(finding.issue->severity));
        result["message"] = {{"text", message(*finding.issue)}};
        result["locations"] = locations(*finding.issue, places);
        result["properties"] = {{"issueId", finding.issue->id}};
        if (!finding.issue->configurations.empty()) {
            result["properties"]["configurations"] = finding.issue->configurations;
        }
        results.push_back(std::move(result));
    }

    Json driver;
    driver["name"] = "Kelvane";
    driver["version"] = KELVANE_VERSION;
    driver["rules"] = rules(scan);

    // A check that threw is no finding, but the reader should know that
    // part of the project went unchecked.
    Json notifications = Json::array();
    for (const CheckOutcome& check : scan.report.checks) {
        if (check.failure) {
            notifications.push_back(
                {{"level", "error"},
                 {"message", {{"text", "Check " + check.checkID + " failed: " + *check.failure}}},
                 {"descriptor", {{"id", check.checkID}}}});
        }
    }
    Json invocation;
    invocation["executionSuccessful"] = true;
    invocation["toolExecutionNotifications"] = std::move(notifications);

    Json run;
    run["tool"] = {{"driver", std::move(driver)}};
    run["invocations"] = Json::array({std::move(invocation)});
    run["results"] = std::move(results);

    Json sarif;
    sarif["$schema"] = kSchema;
    sarif["version"] = "2.1.0";
    sarif["runs"] = Json::array({std::move(run)});
    out << toDocument(sarif);
}

} // namespace kelvane::report
