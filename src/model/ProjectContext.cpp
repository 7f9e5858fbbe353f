#include "model/ProjectContext.h"

namespace kelvane {

const TargetContext* ProjectContext::mainAppTarget() const noexcept {
    if (configuration) {
        const TargetContext* first = nullptr;
        for (const auto& target : targets) {
            if (!target.built || !target.built->mainApp) {
                continue;
            }
            if (target.built->platform == Platform::iOS) {
                return &target;
            }
            first = first ? first : &target;
        }
        return first;
    }
    for (const auto& target : targets) {
        if (target.type == TargetType::application) {
            return &target;
        }
    }
    return nullptr;
}

std::vector<TargetContext> ProjectContext::targetsOfType(TargetType type) const {
    std::vector<TargetContext> result;
    for (const auto& target : targets) {
        if (target.type == type) {
            result.push_back(target);
        }
    }
    return result;
}

} // namespace kelvane
