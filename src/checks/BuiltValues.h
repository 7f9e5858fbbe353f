#pragma once

#include "settings/BooleanSetting.h"

#include "checks/BuiltFindings.h"
#include "diagnostics/EvidenceItem.h"
#include "model/TargetContext.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

// Values of a target read as built that more than one check needs in the
// same form. Header only: each is a few lines over BuiltFindings.
namespace kelvane {

// A boolean build setting as Xcode reads it: on when the value starts with
// Y, y, T, t or a digit 1-9, off for any other value, empty included. An
// unset or unknown setting takes Xcode's default.
[[nodiscard]] inline bool builtFlag(const TargetContext& target, std::string_view setting,
                                    bool defaultValue) {
    const TracedValue* value = target.built->setting(setting);
    if (value == nullptr) {
        return defaultValue;
    }
    return settings::isYes(value->value);
}

// Where a target's bundle identifier comes from: PRODUCT_BUNDLE_IDENTIFIER,
// or, in projects older than that setting, the Info.plist's own
// CFBundleIdentifier. Call only for a target whose identifier is known.
[[nodiscard]] inline EvidenceItem
bundleIdentifierEvidence(const TargetContext& target,
                         std::optional<std::string> expectedValue = {}) {
    const TracedValue* setting = target.built->setting("PRODUCT_BUNDLE_IDENTIFIER");
    if (setting == nullptr || setting->value.empty()) {
        return builtInfoPlistEvidence(target, "CFBundleIdentifier", *target.bundleIdentifier,
                                      std::move(expectedValue));
    }
    return builtSettingEvidence(target, "PRODUCT_BUNDLE_IDENTIFIER", std::move(expectedValue));
}

// Whether a value the build writes is one Kelvane could not know: `names`
// are the entries of BuiltFacts::unknown that would stand for it.
[[nodiscard]] inline bool builtValueUnknown(const TargetContext& target,
                                            std::initializer_list<std::string_view> names) {
    for (const UnknownSetting& unknown : target.built->unknown) {
        for (const std::string_view name : names) {
            if (unknown.name == name) {
                return true;
            }
        }
    }
    return false;
}

// A build setting a fix sets for a finding that only some configurations
// have is set in those configurations alone, one step each, so that the
// others keep their values.
inline void scopeSettingSteps(std::vector<MergedFinding>& findings, const ProjectContext& context) {
    const std::size_t checked = checkedConfigurations(context).size();
    for (MergedFinding& merged : findings) {
        if (merged.configurations.size() >= checked) {
            continue;
        }
        std::vector<FixStep> scoped;
        for (const FixStep& step : merged.finding.steps) {
            const auto* setting = std::get_if<SetBuildSetting>(&step.action);
            if (setting == nullptr) {
                scoped.push_back(step);
                continue;
            }
            for (const std::string& configuration : merged.configurations) {
                SetBuildSetting narrowed = *setting;
                narrowed.configName = configuration;
                scoped.push_back(
                    FixStep{step.description + " (" + configuration + ")", std::move(narrowed)});
            }
        }
        merged.finding.steps = std::move(scoped);
    }
}

} // namespace kelvane
