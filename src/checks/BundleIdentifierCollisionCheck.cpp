#include "checks/BundleIdentifierCollisionCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/CheckSupport.h"
#include "settings/UnicodeLowercase.h"
#include "diagnostics/JoinLines.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace kelvane {
namespace {

constexpr const char* kCheckID = "bundle.identifier.collision";

constexpr const char* kUniqueTitle = "No Bundle ID Collisions";
constexpr const char* kUniqueDescription = "All targets have unique bundle identifiers.";
constexpr const char* kUniqueImpact = "No installation or build conflicts expected.";

constexpr const char* kCollisionTitle = "Bundle Identifier Collision";
constexpr const char* kCollisionDescriptionHead =
    "Multiple targets are configured with the same bundle identifier.\n\n"
    "Collisions detected:\n";
constexpr const char* kCollisionDescriptionTail =
    "\n\nEach target must have a unique bundle identifier. Duplicate bundle IDs cause:\n"
    "• Installation failures on device\n"
    "• App replacement (one target overwrites another)\n"
    "• CI/CD build confusion\n"
    "• Archive and distribution problems";
constexpr const char* kCollisionImpact =
    "Targets with duplicate bundle identifiers will cause installation failures, app "
    "replacement on devices, and CI build failures.";

constexpr const char* kCollisionLineHead = "Bundle ID '";
constexpr const char* kCollisionLineTargets = "' used by: ";

constexpr const char* kFixSummary = "Resolve Bundle ID Collisions";
constexpr const char* kFixWarning =
    "Changing bundle identifiers will affect app installation and data persistence.";

// As built, identifiers are compared only where sharing one breaks an
// install: inside one shipped app, and wherever a test bundle takes part.
// Sibling apps and build variants of a platform are one app built
// differently, so they may share theirs.
constexpr const char* kBuiltUniqueDescription =
    "No app shares its bundle identifier with the content it embeds, and no test bundle shares "
    "one with another bundle of its platform.";
constexpr const char* kBuiltCollisionTail =
    "\n\nBundles that install together need identifiers of their own: an extension, widget or "
    "App Clip with the identifier of the app that embeds it is refused at install and by App "
    "Store validation, and a test bundle with another bundle's identifier replaces that bundle "
    "on the device or simulator. Apps of one platform that embed nothing of each other (sibling "
    "apps, build variants) may share an identifier, and so may apps of different platforms "
    "(universal purchase).";

constexpr const char* kBundleIdentifierSetting = "PRODUCT_BUNDLE_IDENTIFIER";
constexpr const char* kInfoPlistIdentifierKey = "CFBundleIdentifier";

// Lowercased by the full Unicode mapping, with only U+0020 turned into "-":
// tabs and other blanks are left for the user to notice.
std::string suggestedIdentifier(const std::string& sharedIdentifier, const std::string& name) {
    std::string suffix = lowercasedUnicode(name);
    std::replace(suffix.begin(), suffix.end(), ' ', '-');
    return sharedIdentifier + "." + suffix;
}

// Libraries and frameworks are not installed on their own, so they are held
// to no app's rules even when an app embeds them.
bool installsAsBundle(const TargetContext& target) {
    if (target.type == TargetType::framework || target.type == TargetType::staticLibrary) {
        return false;
    }
    const TargetRole role = target.built->role;
    return role == TargetRole::app || role == TargetRole::embedded || role == TargetRole::testBundle;
}

// The shipping unit each target belongs to, as an index into `units`.
std::map<const TargetContext*, std::size_t> unitIndex(const std::vector<ShippingUnit>& units) {
    std::map<const TargetContext*, std::size_t> index;
    for (std::size_t i = 0; i < units.size(); ++i) {
        index.emplace(units[i].app, i);
        for (const TargetContext* content : units[i].content) {
            index.emplace(content, i);
        }
    }
    return index;
}

// The identifier comes from the setting, or from an Info.plist that writes
// it out when the setting is empty.
EvidenceItem identifierEvidence(const TargetContext& target) {
    const TracedValue* setting = target.built->setting(kBundleIdentifierSetting);
    if (setting == nullptr || setting->value.empty()) {
        return builtInfoPlistEvidence(target, kInfoPlistIdentifierKey, *target.bundleIdentifier);
    }
    return builtSettingEvidence(target, kBundleIdentifierSetting);
}

std::vector<BuiltFinding> builtCollisions(const ProjectContext& context) {
    const std::vector<ShippingUnit> units = shippingUnits(context);
    const std::map<const TargetContext*, std::size_t> unitOf = unitIndex(units);
    const auto mustDiffer = [&](const TargetContext* a, const TargetContext* b) {
        if (a->built->role == TargetRole::testBundle || b->built->role == TargetRole::testBundle) {
            return true;
        }
        const auto unitA = unitOf.find(a);
        const auto unitB = unitOf.find(b);
        return unitA != unitOf.end() && unitB != unitOf.end() && unitA->second == unitB->second;
    };

    // Ordered by identifier, as the literal reading lists collisions; a
    // device installs one platform's bundles, so platforms never meet.
    std::map<std::pair<std::string, Platform>, std::vector<const TargetContext*>> byIdentifier;
    for (const TargetContext& target : context.targets) {
        if (target.bundleIdentifier && installsAsBundle(target)) {
            byIdentifier[{*target.bundleIdentifier, target.built->platform}].push_back(&target);
        }
    }

    std::vector<BuiltFinding> findings;
    for (const auto& [identity, sharing] : byIdentifier) {
        const std::string& identifier = identity.first;
        std::vector<const TargetContext*> colliding;
        for (const TargetContext* target : sharing) {
            const bool collides = std::any_of(sharing.begin(), sharing.end(), [&](const auto* other) {
                return other != target && mustDiffer(target, other);
            });
            if (collides) {
                colliding.push_back(target);
            }
        }
        if (colliding.empty()) {
            continue;
        }
        std::vector<std::string> names;
        for (const TargetContext* target : colliding) {
            names.push_back(target->name);
        }
        const std::string line =
            kCollisionLineHead + identifier + kCollisionLineTargets + join(names, ", ");
        BuiltFinding finding{.key = line,
                             .line = line,
                             .severity = Severity::error,
                             .evidence = {},
                             .targets = {},
                             .steps = {}};
        // Apps keep the identifier they ship under; without one, the first
        // target in project order keeps it.
        const bool hasApp = std::any_of(colliding.begin(), colliding.end(), [](const auto* target) {
            return target->built->role == TargetRole::app;
        });
        for (const TargetContext* target : colliding) {
            finding.evidence.push_back(identifierEvidence(*target));
            finding.targets.push_back(TargetRef{target->name, target->type, identifier});
            const bool keeps =
                hasApp ? target->built->role == TargetRole::app : target == colliding.front();
            if (!keeps) {
                const std::string suggestion = suggestedIdentifier(identifier, target->name);
                finding.steps.push_back(
                    setBuildSettingStep("Change " + target->name + " bundle ID to " + suggestion,
                                        target->name, kBundleIdentifierSetting, suggestion));
            }
        }
        findings.push_back(std::move(finding));
    }
    return findings;
}

std::optional<DoctorIssue> runAsBuilt(const ProjectContext& context) {
    const std::vector<MergedFinding> findings = findAcrossConfigurations(context, builtCollisions);
    if (findings.empty()) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kUniqueTitle,
                           .description = kBuiltUniqueDescription,
                           .impact = kUniqueImpact};
    }
    return builtIssue(kCheckID, kCollisionTitle, kCollisionDescriptionHead, findings,
                      kBuiltCollisionTail, kCollisionImpact,
                      DoctorFix{.summary = kFixSummary,
                                .safety = FixSafety::requiresConfirmation,
                                .warningMessage = kFixWarning});
}

} // namespace

std::string BundleIdentifierCollisionCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue>
BundleIdentifierCollisionCheck::run(const ProjectContext& context) const {
    if (isAsBuilt(context)) {
        return runAsBuilt(context);
    }
    // An ordered map walks the identifiers in code-point order, the order the
    // collisions are reported in; targets keep project order within one.
    std::map<std::string, std::vector<TargetContext>> targetsByIdentifier;
    for (const auto& target : context.targets) {
        if (target.bundleIdentifier) {
            targetsByIdentifier[*target.bundleIdentifier].push_back(target);
        }
    }
    std::erase_if(targetsByIdentifier, [](const auto& entry) { return entry.second.size() < 2; });

    if (targetsByIdentifier.empty()) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kUniqueTitle,
                           .description = kUniqueDescription,
                           .impact = kUniqueImpact};
    }

    std::vector<std::string> lines;
    std::vector<EvidenceItem> evidence;
    std::vector<TargetRef> affected;
    std::vector<FixStep> steps;
    for (const auto& [identifier, targets] : targetsByIdentifier) {
        lines.push_back(kCollisionLineHead + identifier + kCollisionLineTargets + joinNames(targets));
        for (const auto& target : targets) {
            evidence.push_back(
                buildSettingEvidence(target.name, kBundleIdentifierSetting, identifier));
            affected.push_back(TargetRef{target.name, target.type, identifier});
        }
        // The first target keeps the identifier. Suggestions are not checked
        // against identifiers in use: the user confirms each one.
        for (auto target = targets.begin() + 1; target != targets.end(); ++target) {
            const std::string suggestion = suggestedIdentifier(identifier, target->name);
            steps.push_back(
                setBuildSettingStep("Change " + target->name + " bundle ID to " + suggestion,
                                    target->name, kBundleIdentifierSetting, suggestion));
        }
    }

    return DoctorIssue{.id = kCheckID,
                       .severity = Severity::error,
                       .title = kCollisionTitle,
                       .description =
                           kCollisionDescriptionHead + joinLines(lines) + kCollisionDescriptionTail,
                       .impact = kCollisionImpact,
                       .evidence = std::move(evidence),
                       .affectedTargets = std::move(affected),
                       .fix = DoctorFix{.summary = kFixSummary,
                                        .safety = FixSafety::requiresConfirmation,
                                        .steps = std::move(steps),
                                        .warningMessage = kFixWarning}};
}

} // namespace kelvane
