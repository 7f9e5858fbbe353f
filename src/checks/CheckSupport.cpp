#include "checks/CheckSupport.h"

#include "diagnostics/JoinLines.h"

#include <utility>

namespace kelvane {

EvidenceItem buildSettingEvidence(std::string targetName, std::string key, std::string value,
                                  std::optional<std::string> expectedValue) {
    return EvidenceItem{
        BuildSettingSource{std::move(targetName), std::string(kEvidenceConfiguration)},
        std::move(key), std::move(value), std::move(expectedValue)};
}

FixStep setBuildSettingStep(std::string description, std::string targetName,
                            std::string settingName, std::string value) {
    return FixStep{std::move(description),
                   SetBuildSetting{std::move(targetName), std::string(kFixConfiguration),
                                   std::move(settingName), std::move(value)}};
}

std::string joinNames(const std::vector<TargetContext>& targets) {
    std::vector<std::string> names;
    names.reserve(targets.size());
    for (const auto& target : targets) {
        names.push_back(target.name);
    }
    return join(names, ", ");
}

std::vector<TargetRef> makeTargetRefs(const std::vector<TargetContext>& targets) {
    std::vector<TargetRef> refs;
    refs.reserve(targets.size());
    for (const auto& target : targets) {
        refs.push_back(makeTargetRef(target));
    }
    return refs;
}

} // namespace kelvane
