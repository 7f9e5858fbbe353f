#include "checks/BuiltFindings.h"

#include "diagnostics/JoinLines.h"
#include "model/FilePath.h"

#include <algorithm>

namespace kelvane {

namespace {

constexpr const char* kNotSet = "(not set)";

// Build-setting evidence names every configuration it holds in; other
// sources (files) carry their origin instead.
void addConfiguration(EvidenceItem& item, const std::string& configuration) {
    if (auto* setting = std::get_if<BuildSettingSource>(&item.source)) {
        std::vector<std::string> names;
        std::string rest = setting->configName;
        for (std::size_t start = 0; start <= rest.size();) {
            const std::size_t comma = rest.find(", ", start);
            names.push_back(rest.substr(start, comma - start));
            if (comma == std::string::npos) {
                break;
            }
            start = comma + 2;
        }
        if (std::find(names.begin(), names.end(), configuration) == names.end()) {
            setting->configName += ", " + configuration;
        }
    }
}

bool sameFact(const EvidenceItem& a, const EvidenceItem& b) {
    const auto* settingA = std::get_if<BuildSettingSource>(&a.source);
    const auto* settingB = std::get_if<BuildSettingSource>(&b.source);
    const bool sameSource = settingA && settingB ? settingA->targetName == settingB->targetName
                                                 : a.source == b.source;
    return sameSource && a.key == b.key && a.value == b.value &&
           a.expectedValue == b.expectedValue && a.origin == b.origin;
}

std::string fileName(const std::optional<std::string>& url, std::string_view fallback) {
    return url ? std::string(path::lastComponent(*url)) : std::string(fallback);
}

} // namespace

bool isAsBuilt(const ProjectContext& context) noexcept {
    return context.configuration.has_value();
}

std::vector<const ProjectContext*> checkedConfigurations(const ProjectContext& context) {
    std::vector<const ProjectContext*> contexts;
    for (const ProjectContext& configuration : context.resolvedConfigurations) {
        contexts.push_back(&configuration);
    }
    if (contexts.empty()) {
        contexts.push_back(&context);
    }
    return contexts;
}

std::vector<MergedFinding> findAcrossConfigurations(
    const ProjectContext& context,
    const std::function<std::vector<BuiltFinding>(const ProjectContext&)>& find) {
    std::vector<MergedFinding> merged;
    for (const ProjectContext* configuration : checkedConfigurations(context)) {
        const std::string name = configuration->configuration.value_or("");
        for (BuiltFinding& finding : find(*configuration)) {
            auto same = std::find_if(merged.begin(), merged.end(), [&](const MergedFinding& m) {
                return m.finding.key == finding.key;
            });
            if (same == merged.end()) {
                merged.push_back(MergedFinding{std::move(finding), {name}});
                continue;
            }
            same->configurations.push_back(name);
            for (const EvidenceItem& item : finding.evidence) {
                auto known = std::find_if(same->finding.evidence.begin(), same->finding.evidence.end(),
                                          [&](const EvidenceItem& have) { return sameFact(have, item); });
                if (known == same->finding.evidence.end()) {
                    same->finding.evidence.push_back(item);
                } else {
                    addConfiguration(*known, name);
                }
            }
        }
    }
    return merged;
}

EvidenceItem builtSettingEvidence(const TargetContext& target, std::string_view setting,
                                  std::optional<std::string> expectedValue) {
    const BuiltFacts& facts = *target.built;
    const TracedValue* value = facts.setting(setting);
    return EvidenceItem{
        .source = BuildSettingSource{target.name, facts.configuration},
        .key = std::string(setting),
        .value = value && !value->value.empty() ? value->value : kNotSet,
        .expectedValue = std::move(expectedValue),
        .origin = value ? std::optional<SettingOrigin>(value->origin) : std::nullopt,
    };
}

EvidenceItem builtEntitlementEvidence(const TargetContext& target, std::string key,
                                      std::string value, std::optional<std::string> expectedValue) {
    const std::string file = fileName(target.entitlementsURL, "entitlements");
    return EvidenceItem{
        .source = EntitlementsSource{target.name, file},
        .key = std::move(key),
        .value = std::move(value),
        .expectedValue = std::move(expectedValue),
        .origin = target.entitlementsURL
                      ? std::optional<SettingOrigin>(SettingOrigin{*target.entitlementsURL, 0, "entitlements"})
                      : std::nullopt,
    };
}

EvidenceItem builtInfoPlistEvidence(const TargetContext& target, std::string key, std::string value,
                                    std::optional<std::string> expectedValue) {
    // A key the build generates comes from its INFOPLIST_KEY_ setting.
    const TracedValue* generated = target.built->setting("INFOPLIST_KEY_" + key);
    std::optional<SettingOrigin> origin;
    if (generated != nullptr) {
        origin = generated->origin;
    } else if (target.infoPlistURL) {
        origin = SettingOrigin{*target.infoPlistURL, 0, "Info.plist"};
    }
    return EvidenceItem{
        .source = PlistSource{target.name, generated ? std::string("Info.plist (generated)")
                                                     : fileName(target.infoPlistURL, "Info.plist")},
        .key = std::move(key),
        .value = std::move(value),
        .expectedValue = std::move(expectedValue),
        .origin = std::move(origin),
    };
}

std::string findingLines(const std::vector<MergedFinding>& findings) {
    std::vector<std::string> lines;
    for (const MergedFinding& merged : findings) {
        lines.push_back("• " + merged.finding.line + " (" + join(merged.configurations, ", ") + ")");
    }
    return joinLines(lines);
}

DoctorIssue builtIssue(std::string id, std::string title, std::string head,
                       const std::vector<MergedFinding>& findings, std::string tail,
                       std::string impact, std::optional<DoctorFix> fix) {
    DoctorIssue issue{.id = std::move(id),
                      .severity = Severity::success,
                      .title = std::move(title),
                      .description = std::move(head) + findingLines(findings) + std::move(tail),
                      .impact = std::move(impact)};
    for (const MergedFinding& merged : findings) {
        issue.severity = std::max(issue.severity, merged.finding.severity);
        for (const std::string& configuration : merged.configurations) {
            if (std::find(issue.configurations.begin(), issue.configurations.end(), configuration) ==
                issue.configurations.end()) {
                issue.configurations.push_back(configuration);
            }
        }
        issue.evidence.insert(issue.evidence.end(), merged.finding.evidence.begin(),
                              merged.finding.evidence.end());
        for (const TargetRef& target : merged.finding.targets) {
            if (std::find(issue.affectedTargets.begin(), issue.affectedTargets.end(), target) ==
                issue.affectedTargets.end()) {
                issue.affectedTargets.push_back(target);
            }
        }
        if (fix) {
            fix->steps.insert(fix->steps.end(), merged.finding.steps.begin(),
                              merged.finding.steps.end());
        }
    }
    issue.fix = std::move(fix);
    return issue;
}

std::optional<DoctorIssue> runAsBuiltOnly(
    const ProjectContext& context, const BuiltCheckTexts& texts,
    const std::function<std::vector<BuiltFinding>(const ProjectContext&)>& find) {
    if (!isAsBuilt(context)) {
        return std::nullopt;
    }
    const std::vector<MergedFinding> findings = findAcrossConfigurations(context, find);
    if (findings.empty()) {
        return DoctorIssue{.id = texts.id,
                           .severity = Severity::success,
                           .title = texts.passTitle,
                           .description = texts.passDescription,
                           .impact = texts.passImpact};
    }
    return builtIssue(texts.id, texts.title, texts.head, findings, texts.tail, texts.impact,
                      texts.fix);
}

const TargetContext* findTarget(const ProjectContext& context, std::string_view name) {
    for (const TargetContext& target : context.targets) {
        if (target.name == name) {
            return &target;
        }
    }
    return nullptr;
}

const TargetContext* hostOf(const ProjectContext& context, const TargetContext& target) {
    return target.built && target.built->host ? findTarget(context, *target.built->host) : nullptr;
}

std::vector<ShippingUnit> shippingUnits(const ProjectContext& context) {
    std::vector<ShippingUnit> units;
    for (const TargetContext& app : context.targets) {
        if (!app.built || app.built->role != TargetRole::app) {
            continue;
        }
        ShippingUnit unit{&app, {}};
        for (const TargetContext& target : context.targets) {
            if (!target.built || target.built->role == TargetRole::testBundle) {
                continue;
            }
            // Follow the hosts up; a loop of hosts ends the walk.
            const TargetContext* host = hostOf(context, target);
            for (std::size_t steps = 0; host != nullptr && host != &app && steps < context.targets.size();
                 ++steps) {
                host = hostOf(context, *host);
            }
            if (host == &app) {
                unit.content.push_back(&target);
            }
        }
        units.push_back(std::move(unit));
    }
    return units;
}

} // namespace kelvane
