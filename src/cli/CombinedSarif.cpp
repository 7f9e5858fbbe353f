#include "cli/CombinedSarif.h"

#include <map>
#include <string>

namespace kelvane::cli {

namespace {

using Json = nlohmann::ordered_json;

// The frame of a report when no project could be loaded to give one.
Json emptyReport() {
    Json driver;
    driver["name"] = "Kelvane";
    driver["version"] = KELVANE_VERSION;
    driver["rules"] = Json::array();
    Json invocation;
    invocation["executionSuccessful"] = true;
    invocation["toolExecutionNotifications"] = Json::array();
    Json run;
    run["tool"] = {{"driver", std::move(driver)}};
    run["invocations"] = Json::array({std::move(invocation)});
    run["results"] = Json::array();
    Json sarif;
    sarif["$schema"] = "https://json.schemastore.org/sarif-2.1.0.json";
    sarif["version"] = "2.1.0";
    sarif["runs"] = Json::array({std::move(run)});
    return sarif;
}

class Merge {
public:
    explicit Merge(Json& run) : run_(run) {
        const Json& rules = run_["tool"]["driver"]["rules"];
        for (std::size_t i = 0; i < rules.size(); ++i) {
            ruleIndex_.emplace(rules[i]["id"].get<std::string>(), i);
        }
    }

    void tagOwnResults(const std::string& path) {
        for (Json& result : run_["results"]) {
            result["properties"]["project"] = path;
        }
    }

    // Rule indexes point into this run's rules, which may list a rule the
    // other run lacks or in another order (a check registry of a different
    // reading).
    void add(const Json& other, const std::string& path) {
        const Json& otherRun = other["runs"][0];
        const Json& otherRules = otherRun["tool"]["driver"]["rules"];
        for (Json result : otherRun["results"]) {
            const std::string id = result["ruleId"].get<std::string>();
            auto known = ruleIndex_.find(id);
            if (known == ruleIndex_.end()) {
                Json& rules = run_["tool"]["driver"]["rules"];
                for (const Json& rule : otherRules) {
                    if (rule["id"] == id) {
                        rules.push_back(rule);
                        known = ruleIndex_.emplace(id, rules.size() - 1).first;
                        break;
                    }
                }
            }
            if (known != ruleIndex_.end()) {
                result["ruleIndex"] = known->second;
            } else {
                result.erase("ruleIndex");
            }
            result["properties"]["project"] = path;
            run_["results"].push_back(std::move(result));
        }
        for (const Json& notification :
             otherRun["invocations"][0]["toolExecutionNotifications"]) {
            notifications().push_back(notification);
        }
    }

    void notLoaded(const std::string& path, const std::string& reason) {
        notifications().push_back(
            {{"level", "error"},
             {"message", {{"text", "Project " + path + " was not scanned: " + reason}}}});
    }

private:
    Json& notifications() { return run_["invocations"][0]["toolExecutionNotifications"]; }

    Json& run_;
    std::map<std::string, std::size_t> ruleIndex_;
};

} // namespace

nlohmann::ordered_json combinedSarif(const std::vector<ProjectReport>& projects) {
    std::size_t first = projects.size();
    for (std::size_t i = 0; i < projects.size(); ++i) {
        if (!projects[i].failure) {
            first = i;
            break;
        }
    }
    Json sarif = first < projects.size() ? Json::parse(projects[first].report) : emptyReport();
    Merge merge(sarif["runs"][0]);
    if (first < projects.size()) {
        merge.tagOwnResults(projects[first].project.path);
    }
    for (std::size_t i = 0; i < projects.size(); ++i) {
        const ProjectReport& project = projects[i];
        if (project.failure) {
            merge.notLoaded(project.project.path, *project.failure);
        } else if (i != first) {
            merge.add(Json::parse(project.report), project.project.path);
        }
    }
    return sarif;
}

} // namespace kelvane::cli
