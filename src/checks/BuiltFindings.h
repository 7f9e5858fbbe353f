#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the checks share when a project is read as built: every
// configuration is checked, and a problem found in several is reported once,
// naming them.
namespace kelvane {

[[nodiscard]] bool isAsBuilt(const ProjectContext& context) noexcept;

// The configurations a scan checks: those resolved beside the project, or
// the project alone when it was resolved for one.
[[nodiscard]] std::vector<const ProjectContext*> checkedConfigurations(const ProjectContext& context);

// One problem the as-built rules of a check find in one configuration.
struct BuiltFinding {
    // What the problem is, without the configuration: findings with equal
    // keys in several configurations are one finding.
    std::string key;
    // The line the issue's description gives it.
    std::string line;
    Severity severity = Severity::warning;
    std::vector<EvidenceItem> evidence;
    std::vector<TargetRef> targets;
    std::vector<FixStep> steps;
};

// A finding with the configurations it holds in, in the project's order.
struct MergedFinding {
    BuiltFinding finding;
    std::vector<std::string> configurations;
};

// Runs `find` over every checked configuration and merges equal findings.
// Evidence from build settings names every configuration the finding holds
// in ("Debug, Release").
[[nodiscard]] std::vector<MergedFinding> findAcrossConfigurations(
    const ProjectContext& context,
    const std::function<std::vector<BuiltFinding>(const ProjectContext&)>& find);

// A build setting of a target as built, in the configuration the target was
// resolved for, with where it was set; "(not set)" when it has no value.
[[nodiscard]] EvidenceItem builtSettingEvidence(const TargetContext& target,
                                                std::string_view setting,
                                                std::optional<std::string> expectedValue = {});

// A key of the target's entitlements or Info.plist as the build writes them.
[[nodiscard]] EvidenceItem builtEntitlementEvidence(const TargetContext& target, std::string key,
                                                    std::string value,
                                                    std::optional<std::string> expectedValue = {});
[[nodiscard]] EvidenceItem builtInfoPlistEvidence(const TargetContext& target, std::string key,
                                                  std::string value,
                                                  std::optional<std::string> expectedValue = {});

// The lines of merged findings, each ending with the configurations it holds
// in, as an issue description lists them.
[[nodiscard]] std::string findingLines(const std::vector<MergedFinding>& findings);

// The issue for merged findings: the worst severity among them, `head`, the
// finding lines, then `tail`; evidence, affected targets (each once) and fix
// steps of every finding in order. `fix` gives summary, safety and warning;
// its steps are the findings'.
[[nodiscard]] DoctorIssue builtIssue(std::string id, std::string title, std::string head,
                                     const std::vector<MergedFinding>& findings, std::string tail,
                                     std::string impact, std::optional<DoctorFix> fix);

// The texts of a check that only the as-built reading runs: its success,
// and the issue its findings make.
struct BuiltCheckTexts {
    const char* id;
    const char* passTitle;
    const char* passDescription;
    const char* passImpact;
    const char* title;
    const char* head;
    const char* tail;
    const char* impact;
    DoctorFix fix;
};

// The outcome of such a check: nothing read literally, the success when
// `find` finds nothing in any configuration, else the merged findings' issue.
[[nodiscard]] std::optional<DoctorIssue> runAsBuiltOnly(
    const ProjectContext& context, const BuiltCheckTexts& texts,
    const std::function<std::vector<BuiltFinding>(const ProjectContext&)>& find);

// The target of that name, or nullptr.
[[nodiscard]] const TargetContext* findTarget(const ProjectContext& context, std::string_view name);

// The target that embeds `target` or that a test bundle runs in.
[[nodiscard]] const TargetContext* hostOf(const ProjectContext& context, const TargetContext& target);

// What ships as one product: an app that no other target embeds, then
// everything it embeds, directly or through embedded content, in project
// order. Test bundles are not part of it.
struct ShippingUnit {
    const TargetContext* app = nullptr;
    std::vector<const TargetContext*> content;
};
[[nodiscard]] std::vector<ShippingUnit> shippingUnits(const ProjectContext& context);

} // namespace kelvane
