#include "checks/BundleIdentifierCollisionCheck.h"

#include "checks/CheckSupport.h"
#include "settings/UnicodeLowercase.h"
#include "diagnostics/JoinLines.h"

#include <algorithm>
#include <map>
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

constexpr const char* kFixSummary = "Resolve Bundle ID Collisions";
constexpr const char* kFixWarning =
    "Changing bundle identifiers will affect app installation and data persistence.";

constexpr const char* kBundleIdentifierSetting = "PRODUCT_BUNDLE_IDENTIFIER";

// Lowercased by the full Unicode mapping, with only U+0020 turned into "-":
// tabs and other blanks are left for the user to notice.
std::string suggestedIdentifier(const std::string& sharedIdentifier, const std::string& name) {
    std::string suffix = lowercasedUnicode(name);
    std::replace(suffix.begin(), suffix.end(), ' ', '-');
    return sharedIdentifier + "." + suffix;
}

} // namespace

std::string BundleIdentifierCollisionCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue>
BundleIdentifierCollisionCheck::run(const ProjectContext& context) const {
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
        lines.push_back("Bundle ID '" + identifier + "' used by: " + joinNames(targets));
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
