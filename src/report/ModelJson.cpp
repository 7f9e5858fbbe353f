#include "report/ModelJson.h"

namespace kelvane::report {

nlohmann::ordered_json textOrNull(const std::optional<std::string>& text) {
    return text ? nlohmann::ordered_json(*text) : nlohmann::ordered_json(nullptr);
}

namespace {

nlohmann::ordered_json toJson(const TracedValue& traced) {
    const SettingOrigin& origin = traced.origin;
    nlohmann::ordered_json json;
    json["value"] = traced.value;
    json["file"] = origin.file.empty() ? nlohmann::ordered_json(nullptr)
                                       : nlohmann::ordered_json(origin.file);
    json["line"] = origin.line == 0 ? nlohmann::ordered_json(nullptr)
                                    : nlohmann::ordered_json(origin.line);
    json["level"] = origin.level;
    return json;
}

// What the as-built reading adds to a target, after the fields both share.
void addBuiltFacts(const BuiltFacts& facts, nlohmann::ordered_json& json) {
    json["project"] = facts.project;
    json["configuration"] = facts.configuration;
    json["productType"] = facts.productType;
    json["platform"] = std::string(platformName(facts.platform));
    json["role"] = std::string(roleName(facts.role));
    json["mainApp"] = facts.mainApp;
    json["host"] = textOrNull(facts.host);
    json["embeds"] = facts.embeds;
    nlohmann::ordered_json settings = nlohmann::ordered_json::object();
    for (const auto& [name, traced] : facts.settings) {
        settings[name] = toJson(traced);
    }
    json["settings"] = std::move(settings);
    nlohmann::ordered_json unknown = nlohmann::ordered_json::array();
    for (const UnknownSetting& setting : facts.unknown) {
        unknown.push_back({{"name", setting.name}, {"reason", setting.reason}});
    }
    json["unknownSettings"] = std::move(unknown);
}

} // namespace

nlohmann::ordered_json toJson(const TargetContext& target) {
    nlohmann::ordered_json json;
    json["name"] = target.name;
    json["type"] = std::string(rawValue(target.type));
    json["infoPlistURL"] = textOrNull(target.infoPlistURL);
    json["entitlementsURL"] = textOrNull(target.entitlementsURL);
    json["bundleIdentifier"] = textOrNull(target.bundleIdentifier);
    json["linkedFrameworks"] = target.linkedFrameworks;
    json["developmentTeam"] = textOrNull(target.developmentTeam);
    json["codeSignStyle"] = textOrNull(target.codeSignStyle);
    json["deploymentTarget"] = textOrNull(target.deploymentTarget);
    if (target.built) {
        addBuiltFacts(*target.built, json);
    }
    return json;
}

nlohmann::ordered_json toJson(const ProjectContext& project) {
    nlohmann::ordered_json targets = nlohmann::ordered_json::array();
    for (const TargetContext& target : project.targets) {
        targets.push_back(toJson(target));
    }
    nlohmann::ordered_json json;
    json["projectURL"] = project.projectURL;
    if (project.configuration) {
        json["configuration"] = *project.configuration;
        json["configurations"] = project.configurations;
    }
    json["targets"] = std::move(targets);
    return json;
}

std::string toDocument(const nlohmann::ordered_json& json) {
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace kelvane::report
