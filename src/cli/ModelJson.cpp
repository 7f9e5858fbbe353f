#include "cli/ModelJson.h"

namespace kelvane::cli {

nlohmann::ordered_json textOrNull(const std::optional<std::string>& text) {
    return text ? nlohmann::ordered_json(*text) : nlohmann::ordered_json(nullptr);
}

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
    return json;
}

nlohmann::ordered_json toJson(const ProjectContext& project) {
    nlohmann::ordered_json targets = nlohmann::ordered_json::array();
    for (const TargetContext& target : project.targets) {
        targets.push_back(toJson(target));
    }
    nlohmann::ordered_json json;
    json["projectURL"] = project.projectURL;
    json["targets"] = std::move(targets);
    return json;
}

std::string toDocument(const nlohmann::ordered_json& json) {
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace kelvane::cli
