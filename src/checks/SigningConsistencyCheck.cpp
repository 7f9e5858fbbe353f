#include "checks/SigningConsistencyCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/CheckSupport.h"
#include "diagnostics/JoinLines.h"

#include <array>
#include <set>
#include <vector>

namespace kelvane {
namespace {

constexpr const char* kCheckID = "signing.inconsistent";

constexpr const char* kSingleTitle = "Single Target Project";
constexpr const char* kSingleDescription =
    "This project has only one target, so signing consistency checks are not applicable.";
constexpr const char* kSingleImpact =
    "No signing consistency issues can occur with a single target.";

constexpr const char* kConsistentTitle = "Code Signing Consistent";
constexpr const char* kConsistentDescriptionHead =
    "All targets use consistent code signing settings.\n\nDevelopment Team: ";
constexpr const char* kConsistentDescriptionStyle = "\nCode Sign Style: ";
constexpr const char* kConsistentImpact =
    "No signing-related build or distribution issues expected.";

constexpr const char* kInconsistentTitle = "Inconsistent Code Signing Settings";
constexpr const char* kInconsistentDescriptionHead =
    "Code signing settings are inconsistent across targets in this project.\n\n"
    "Detected inconsistencies:\n";
constexpr const char* kInconsistentDescriptionTail =
    "\n\nConsistent signing settings are recommended for:\n"
    "• Smooth CI/CD integration\n"
    "• Avoiding provisioning profile conflicts\n"
    "• Predictable build behavior\n"
    "• Easier team collaboration\n\n"
    "This is not always an error—some projects intentionally use different signing for "
    "different targets (e.g., app vs. extension). Review your project's signing requirements.";
constexpr const char* kInconsistentImpact =
    "Inconsistent signing settings can cause CI build failures, provisioning profile "
    "conflicts, and installation issues when distributing the app.";
constexpr const char* kMultipleTeams = "Multiple development teams: ";
constexpr const char* kMultipleStyles = "Multiple code sign styles: ";

constexpr const char* kFixSummary = "Align Signing Settings";
constexpr const char* kFixWarning =
    "Changing signing settings may affect your ability to build and distribute the app. Ensure "
    "you have the correct certificates and provisioning profiles.";
constexpr const char* kManualStepDescription = "Manually review signing settings in Xcode";
constexpr std::array<const char*, 4> kManualInstructions{
    "Open project.pbxproj in Xcode", "Review DEVELOPMENT_TEAM across all targets",
    "Review CODE_SIGN_STYLE across all targets", "Align settings as needed for your project"};

// As built, only targets that are signed together are compared: an app with
// what it embeds, a test bundle with its host.
constexpr const char* kBuiltConsistentDescription =
    "Every app and the content it embeds, and every test bundle and its host, are signed by one "
    "team in one style.";
constexpr const char* kBuiltInconsistentHead =
    "Targets that are signed together disagree:\n";
constexpr const char* kBuiltInconsistentTail =
    "\n\nAn app extension, widget, watch app or App Clip must be signed by the team that signs the "
    "app embedding it, and a hosted test bundle by its host's team; App Store validation and "
    "device installs refuse anything else. Mixed signing styles within one app make "
    "provisioning depend on which target a developer builds.";
constexpr const char* kBuiltTeams = " are signed by different teams: ";
constexpr const char* kBuiltStyles = " use different signing styles: ";

constexpr const char* kTeamSetting = "DEVELOPMENT_TEAM";
constexpr const char* kStyleSetting = "CODE_SIGN_STYLE";
constexpr const char* kNotSet = "(not set)";

std::string orNotSet(const std::optional<std::string>& value) {
    return value.value_or(kNotSet);
}

// Sorted so the detected line reads the same whichever target comes first.
std::set<std::string> distinctValues(const std::vector<TargetContext>& targets,
                                     std::optional<std::string> TargetContext::*setting) {
    std::set<std::string> values;
    for (const auto& target : targets) {
        if (const auto& value = target.*setting) {
            values.insert(*value);
        }
    }
    return values;
}

std::string joined(const std::set<std::string>& values) {
    return join(std::vector<std::string>(values.begin(), values.end()), ", ");
}

// The first target is the reference, not the main app and not the majority:
// without both of its values there is nothing to align to.
DoctorFix alignmentFix(const std::vector<TargetContext>& targets) {
    DoctorFix fix{
        .summary = kFixSummary, .safety = FixSafety::manualOnly, .warningMessage = kFixWarning};
    const auto& reference = targets.front();
    if (!reference.developmentTeam || !reference.codeSignStyle) {
        fix.steps.push_back(
            FixStep{kManualStepDescription,
                    ManualInstruction{{kManualInstructions.begin(), kManualInstructions.end()}}});
        return fix;
    }
    const std::string& team = *reference.developmentTeam;
    const std::string& style = *reference.codeSignStyle;
    for (auto target = targets.begin() + 1; target != targets.end(); ++target) {
        fix.steps.push_back(
            setBuildSettingStep("Set " + target->name + " DEVELOPMENT_TEAM to '" + team + "'",
                                target->name, kTeamSetting, team));
        fix.steps.push_back(
            setBuildSettingStep("Set " + target->name + " CODE_SIGN_STYLE to '" + style + "'",
                                target->name, kStyleSetting, style));
    }
    return fix;
}

// "App (ABCDE12345), Widget (ZZZZZ99999)" for the targets that have a value.
std::string valuesByTarget(const std::vector<const TargetContext*>& targets,
                           std::optional<std::string> TargetContext::*setting) {
    std::vector<std::string> parts;
    for (const TargetContext* target : targets) {
        if (const auto& value = target->*setting) {
            parts.push_back(target->name + " (" + *value + ")");
        }
    }
    return join(parts, ", ");
}

// Targets that leave a value unset, or whose value is unknown, do not count
// as disagreeing.
std::optional<BuiltFinding> disagreement(const std::string& subject,
                                         const std::vector<const TargetContext*>& targets,
                                         std::optional<std::string> TargetContext::*setting,
                                         const char* settingName, const char* verb) {
    std::set<std::string> values;
    for (const TargetContext* target : targets) {
        if (const auto& value = target->*setting) {
            values.insert(*value);
        }
    }
    if (values.size() < 2) {
        return std::nullopt;
    }
    const std::string listed = valuesByTarget(targets, setting);
    BuiltFinding finding{.key = subject + verb + listed,
                         .line = subject + verb + listed,
                         .severity = Severity::warning,
                         .evidence = {},
                         .targets = {},
                         .steps = {}};
    for (const TargetContext* target : targets) {
        finding.evidence.push_back(builtSettingEvidence(*target, settingName));
        finding.targets.push_back(makeTargetRef(*target));
    }
    // Aligning means taking the value of the target the others are signed with.
    const TargetContext& reference = *targets.front();
    if (const auto& value = reference.*setting) {
        for (const TargetContext* target : targets) {
            if (target->*setting && *(target->*setting) != *value) {
                finding.steps.push_back(setBuildSettingStep(
                    "Set " + target->name + " " + settingName + " to '" + *value + "'", target->name,
                    settingName, *value));
            }
        }
    }
    return finding;
}

std::vector<BuiltFinding> builtFindings(const ProjectContext& context) {
    std::vector<BuiltFinding> findings;
    // A test bundle must share its host's team, but is provisioned on its
    // own: its signing style may differ.
    const auto compare = [&](const std::string& subject,
                             const std::vector<const TargetContext*>& together, bool styles) {
        if (auto teams = disagreement(subject, together, &TargetContext::developmentTeam,
                                      kTeamSetting, kBuiltTeams)) {
            findings.push_back(std::move(*teams));
        }
        if (!styles) {
            return;
        }
        if (auto different = disagreement(subject, together, &TargetContext::codeSignStyle,
                                          kStyleSetting, kBuiltStyles)) {
            findings.push_back(std::move(*different));
        }
    };
    for (const ShippingUnit& unit : shippingUnits(context)) {
        // Embedded frameworks are signed again as they are copied in, with
        // the app's identity: their own team and style never reach a device.
        std::vector<const TargetContext*> together{unit.app};
        for (const TargetContext* content : unit.content) {
            if (content->type != TargetType::framework && content->type != TargetType::staticLibrary) {
                together.push_back(content);
            }
        }
        if (together.size() < 2) {
            continue;
        }
        compare(unit.app->name + " and the content it embeds", together, true);
    }
    for (const TargetContext& target : context.targets) {
        const TargetContext* host = hostOf(context, target);
        if (target.built->role == TargetRole::testBundle && host != nullptr) {
            compare(target.name + " and its host " + host->name, {host, &target}, false);
        }
    }
    return findings;
}

std::optional<DoctorIssue> runAsBuilt(const ProjectContext& context) {
    const std::vector<MergedFinding> findings = findAcrossConfigurations(context, builtFindings);
    if (findings.empty()) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kConsistentTitle,
                           .description = kBuiltConsistentDescription,
                           .impact = kConsistentImpact};
    }
    return builtIssue(kCheckID, kInconsistentTitle, kBuiltInconsistentHead, findings,
                      kBuiltInconsistentTail, kInconsistentImpact,
                      DoctorFix{.summary = kFixSummary,
                                .safety = FixSafety::manualOnly,
                                .warningMessage = kFixWarning});
}

} // namespace

std::string SigningConsistencyCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue> SigningConsistencyCheck::run(const ProjectContext& context) const {
    if (isAsBuilt(context)) {
        return runAsBuilt(context);
    }
    const auto& targets = context.targets;
    if (targets.size() < 2) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kSingleTitle,
                           .description = kSingleDescription,
                           .impact = kSingleImpact};
    }

    const auto teams = distinctValues(targets, &TargetContext::developmentTeam);
    const auto styles = distinctValues(targets, &TargetContext::codeSignStyle);
    if (teams.size() <= 1 && styles.size() <= 1) {
        const std::string team = teams.empty() ? kNotSet : *teams.begin();
        const std::string style = styles.empty() ? kNotSet : *styles.begin();
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kConsistentTitle,
                           .description = kConsistentDescriptionHead + team +
                                          kConsistentDescriptionStyle + style,
                           .impact = kConsistentImpact,
                           .affectedTargets = makeTargetRefs(targets)};
    }

    std::vector<std::string> lines;
    if (teams.size() > 1) {
        lines.push_back(kMultipleTeams + joined(teams));
    }
    if (styles.size() > 1) {
        lines.push_back(kMultipleStyles + joined(styles));
    }
    std::vector<EvidenceItem> evidence;
    for (const auto& target : targets) {
        evidence.push_back(
            buildSettingEvidence(target.name, kTeamSetting, orNotSet(target.developmentTeam)));
        evidence.push_back(
            buildSettingEvidence(target.name, kStyleSetting, orNotSet(target.codeSignStyle)));
    }
    return DoctorIssue{.id = kCheckID,
                       .severity = Severity::warning,
                       .title = kInconsistentTitle,
                       .description = kInconsistentDescriptionHead + joinLines(lines) +
                                      kInconsistentDescriptionTail,
                       .impact = kInconsistentImpact,
                       .evidence = std::move(evidence),
                       .affectedTargets = makeTargetRefs(targets),
                       .fix = alignmentFix(targets)};
}

} // namespace kelvane
