#include "report/IssueJson.h"

#include "report/ModelJson.h"
#include "diagnostics/Overloaded.h"

namespace kelvane::report {

namespace {

using Json = nlohmann::ordered_json;

template <class Payload> Json kindOf(const Payload&) {
    Json json;
    json["kind"] = std::string(Payload::kind);
    return json;
}

template <class Record> Json arrayOf(const std::vector<Record>& records) {
    Json json = Json::array();
    for (const Record& record : records) {
        json.push_back(toJson(record));
    }
    return json;
}

} // namespace

Json toJson(const EntitlementValue& value) {
    Json json;
    json["kind"] = std::string(caseName(value));
    std::visit([&](const auto& payload) { json["value"] = payload; }, value.value);
    return json;
}

Json toJson(const FixAction& action) {
    return std::visit(Overloaded{
                          [](const UpdatePlistKey& a) {
                              Json json = kindOf(a);
                              json["targetName"] = a.targetName;
                              json["fileName"] = a.fileName;
                              json["key"] = a.key;
                              json["newValue"] = a.newValue;
                              return json;
                          },
                          [](const SetBuildSetting& a) {
                              Json json = kindOf(a);
                              json["targetName"] = textOrNull(a.targetName);
                              json["configName"] = a.configName;
                              json["settingName"] = a.settingName;
                              json["value"] = a.value;
                              return json;
                          },
                          [](const UpdateEntitlement& a) {
                              Json json = kindOf(a);
                              json["targetName"] = a.targetName;
                              json["fileName"] = a.fileName;
                              json["key"] = a.key;
                              json["newValue"] = toJson(a.newValue);
                              return json;
                          },
                          [](const UpdateSchemeSetting& a) {
                              Json json = kindOf(a);
                              json["schemeName"] = a.schemeName;
                              json["buildConfiguration"] = a.buildConfiguration;
                              return json;
                          },
                          [](const AddFrameworkReference& a) {
                              Json json = kindOf(a);
                              json["targetName"] = a.targetName;
                              json["frameworkName"] = a.frameworkName;
                              return json;
                          },
                          [](const ManualInstruction& a) {
                              Json json = kindOf(a);
                              json["steps"] = a.steps;
                              return json;
                          },
                      },
                      action);
}

Json toJson(const EvidenceSource& source) {
    return std::visit(Overloaded{
                          [](const PlistSource& s) {
                              Json json = kindOf(s);
                              json["targetName"] = s.targetName;
                              json["fileName"] = s.fileName;
                              return json;
                          },
                          [](const EntitlementsSource& s) {
                              Json json = kindOf(s);
                              json["targetName"] = s.targetName;
                              json["fileName"] = s.fileName;
                              return json;
                          },
                          [](const BuildSettingSource& s) {
                              Json json = kindOf(s);
                              json["targetName"] = s.targetName;
                              json["configName"] = s.configName;
                              return json;
                          },
                          [](const SchemeSource& s) {
                              Json json = kindOf(s);
                              json["schemeName"] = s.schemeName;
                              return json;
                          },
                          [](const ProjectSettingSource& s) {
                              Json json = kindOf(s);
                              json["configName"] = s.configName;
                              return json;
                          },
                          [](const CapabilitySource& s) {
                              Json json = kindOf(s);
                              json["targetName"] = s.targetName;
                              json["capabilityName"] = s.capabilityName;
                              return json;
                          },
                          [](const FrameworkReferenceSource& s) {
                              Json json = kindOf(s);
                              json["targetName"] = s.targetName;
                              return json;
                          },
                          [](const WatchKitExtensionSource& s) {
                              Json json = kindOf(s);
                              json["targetName"] = s.targetName;
                              return json;
                          },
                      },
                      source);
}

Json toJson(const EvidenceItem& item) {
    Json json;
    json["source"] = toJson(item.source);
    json["location"] = locationDescription(item.source);
    json["key"] = item.key;
    json["value"] = item.value;
    json["expectedValue"] = textOrNull(item.expectedValue);
    // Only the as-built reading knows where a value was set.
    if (item.origin) {
        Json origin;
        origin["file"] = item.origin->file.empty() ? Json(nullptr) : Json(item.origin->file);
        origin["line"] = item.origin->line == 0 ? Json(nullptr) : Json(item.origin->line);
        origin["column"] = item.origin->column == 0 ? Json(nullptr) : Json(item.origin->column);
        origin["level"] = item.origin->level;
        json["origin"] = std::move(origin);
    }
    return json;
}

Json toJson(const TargetRef& target) {
    Json json;
    json["name"] = target.name;
    json["type"] = std::string(rawValue(target.type));
    json["bundleID"] = textOrNull(target.bundleID);
    return json;
}

Json toJson(const DoctorFix& fix) {
    Json steps = Json::array();
    for (const FixStep& step : fix.steps) {
        Json json;
        json["description"] = step.description;
        json["action"] = toJson(step.action);
        steps.push_back(std::move(json));
    }
    Json json;
    json["summary"] = fix.summary;
    json["safety"] = std::string(rawValue(fix.safety));
    json["warningMessage"] = textOrNull(fix.warningMessage);
    json["steps"] = std::move(steps);
    return json;
}

Json toJson(const DoctorIssue& issue) {
    Json json;
    json["id"] = issue.id;
    json["severity"] = std::string(rawValue(issue.severity));
    json["title"] = issue.title;
    json["description"] = issue.description;
    json["impact"] = issue.impact;
    json["evidence"] = arrayOf(issue.evidence);
    json["affectedTargets"] = arrayOf(issue.affectedTargets);
    json["fix"] = issue.fix ? toJson(*issue.fix) : Json(nullptr);
    if (!issue.configurations.empty()) {
        json["configurations"] = issue.configurations;
    }
    return json;
}

} // namespace kelvane::report
