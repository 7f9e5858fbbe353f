#include "settings/SettingsScope.h"

#include "settings/SettingsEvaluation.h"

#include <algorithm>

namespace kelvane::settings {

SettingsScope::SettingsScope(std::vector<Assignment> stack, Bindings bindings)
    : stack_(std::move(stack)), bindings_(std::move(bindings)) {
    for (std::size_t i = 0; i < stack_.size(); ++i) {
        const Assignment& assignment = stack_[i];
        if (assignment.builtIn) {
            builtInNames_.insert(assignment.name);
        }
        if (assignment.isPlaceholder() && assignment.name.empty()) {
            placeholders_.push_back(i);
        } else {
            auto found = byName_.find(assignment.name);
            if (found == byName_.end()) {
                found = byName_.emplace(assignment.name, std::vector<std::size_t>()).first;
            }
            found->second.push_back(i);
        }
    }
}

bool SettingsScope::conditionsMatch(const Assignment& assignment) const {
    return std::all_of(assignment.conditions.begin(), assignment.conditions.end(),
                       [this](const Condition& condition) {
                           const auto bound = bindings_.find(condition.parameter);
                           return bound == bindings_.end()
                                      ? condition.pattern == "*"
                                      : patternMatches(condition.pattern, bound->second);
                       });
}

std::optional<std::size_t> SettingsScope::find(std::string_view name, std::size_t below) const {
    std::optional<std::size_t> newest;
    if (const auto named = byName_.find(name); named != byName_.end()) {
        const auto& positions = named->second;
        for (auto at = std::lower_bound(positions.begin(), positions.end(), below);
             at != positions.begin();) {
            --at;
            if (conditionsMatch(stack_[*at])) {
                newest = *at;
                break;
            }
        }
    }
    // Xcode's own settings are never redefined by a file Kelvane could not read.
    if (builtInNames_.find(name) != builtInNames_.end()) {
        return newest;
    }
    for (auto at = std::lower_bound(placeholders_.begin(), placeholders_.end(), below);
         at != placeholders_.begin();) {
        --at;
        if (newest && *at < *newest) {
            break;
        }
        const Assignment& placeholder = stack_[*at];
        if ((!placeholder.sparesIdentity || !isIdentitySetting(name)) &&
            conditionsMatch(placeholder)) {
            newest = *at;
            break;
        }
    }
    return newest;
}

Resolved SettingsScope::evaluate(std::string_view name) const {
    const ExtraValues none;
    return Evaluation(*this, none).setting(name);
}

Resolved SettingsScope::expand(std::string_view text, const ExtraValues& extra) const {
    return Evaluation(*this, extra).text(text);
}

} // namespace kelvane::settings
