#include "checks/CloudKitEntitlementCheck.h"

#include "checks/CheckSupport.h"
#include "checks/DoctorCheck.h"
#include "checks/EntitlementsReader.h"
#include "diagnostics/JoinLines.h"
#include "model/FilePath.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

constexpr std::string_view kContainerPrefix = "iCloud.";
// Used when the main app names no entitlements file. Unlike the app-group and
// capability checks, this check otherwise names the real file.
constexpr std::string_view kFallbackFileName = "Entitlements.plist";
constexpr std::string_view kBundleIdentifierSetting = "PRODUCT_BUNDLE_IDENTIFIER";

constexpr std::string_view kValidTitle = "CloudKit Configuration Valid";
constexpr std::string_view kValidDescriptionLead = "CloudKit container identifier '";
constexpr std::string_view kValidDescriptionTrail = "' is correctly configured in entitlements.";
constexpr std::string_view kValidImpact = "No impact - CloudKit is properly configured.";

constexpr std::string_view kMissingTitle = "CloudKit Container Identifier Missing";
constexpr std::string_view kNoContainersDescription =
    "CloudKit entitlement is present but no container identifiers are configured.";
constexpr std::string_view kMissingDescriptionLead =
    "CloudKit is enabled but the expected container identifier '";
constexpr std::string_view kMissingDescriptionMiddle = "' is not in the declared containers: [";
constexpr std::string_view kMissingDescriptionTrail = "]";
constexpr std::string_view kMissingImpact =
    "CloudKit API calls will fail at runtime with authorization errors. Data sync will not work.";
constexpr std::string_view kExpectedValueLead = "Should include: ";

constexpr std::string_view kFixSummary =
    "Add expected CloudKit container identifier to entitlements";
constexpr std::string_view kFixWarning = "Ensure this container identifier matches your App ID "
                                         "configuration in the Apple Developer Portal.";
constexpr std::string_view kFixStepLead = "Add '";
constexpr std::string_view kFixStepTrail = "' to iCloud container identifiers";

struct ContainerHolder {
    const TargetContext* target;
    // In the order the file gives them.
    std::vector<std::string> containers;
};

} // namespace

std::optional<DoctorIssue> CloudKitEntitlementCheck::run(const ProjectContext& context) const {
    // Every target's file is read, not only the main app's, so that a broken
    // file anywhere fails the check the same way the other entitlement checks do.
    std::vector<ContainerHolder> holders;
    for (const TargetContext& target : context.targets) {
        const plist::Dictionary entitlements = readEntitlements(target);
        const plist::Value* value = entitlements.find(containerKey);
        if (value == nullptr) {
            continue;
        }
        if (auto containers = identifierList(*value)) {
            holders.push_back({&target, std::move(*containers)});
        }
    }
    if (holders.empty()) {
        return std::nullopt;
    }
    const TargetContext* app = context.mainAppTarget();
    if (app == nullptr || !app->bundleIdentifier) {
        return std::nullopt;
    }
    const auto holder = std::find_if(holders.begin(), holders.end(), [&](const auto& candidate) {
        return candidate.target->name == app->name;
    });
    if (holder == holders.end()) {
        return std::nullopt;
    }

    const std::vector<std::string>& containers = holder->containers;
    const std::string expected = std::string(kContainerPrefix) + *app->bundleIdentifier;
    const bool valid =
        std::find(containers.begin(), containers.end(), expected) != containers.end();

    DoctorIssue issue;
    issue.id = checkID;
    if (app->entitlementsURL) {
        issue.evidence.push_back(EvidenceItem{
            EntitlementsSource{app->name, std::string(path::lastComponent(*app->entitlementsURL))},
            containerKey, join(containers, ", "),
            valid ? std::nullopt : std::optional(std::string(kExpectedValueLead) + expected)});
    }
    issue.evidence.push_back(buildSettingEvidence(app->name, std::string(kBundleIdentifierSetting),
                                                  *app->bundleIdentifier));
    issue.affectedTargets.push_back(makeTargetRef(*app));

    if (valid) {
        issue.severity = Severity::success;
        issue.title = kValidTitle;
        issue.description =
            std::string(kValidDescriptionLead) + expected + std::string(kValidDescriptionTrail);
        issue.impact = kValidImpact;
        return issue;
    }

    issue.severity = Severity::error;
    issue.title = kMissingTitle;
    issue.description = containers.empty()
                            ? std::string(kNoContainersDescription)
                            : std::string(kMissingDescriptionLead) + expected +
                                  std::string(kMissingDescriptionMiddle) + join(containers, ", ") +
                                  std::string(kMissingDescriptionTrail);
    issue.impact = kMissingImpact;

    std::vector<std::string> newContainers = containers;
    newContainers.push_back(expected);
    const std::string fileName = app->entitlementsURL
                                     ? std::string(path::lastComponent(*app->entitlementsURL))
                                     : std::string(kFallbackFileName);
    issue.fix =
        DoctorFix{std::string(kFixSummary),
                  FixSafety::requiresConfirmation,
                  {FixStep{std::string(kFixStepLead) + expected + std::string(kFixStepTrail),
                           UpdateEntitlement{app->name, fileName, containerKey,
                                             EntitlementValue::array(std::move(newContainers))}}},
                  std::string(kFixWarning)};
    return issue;
}

static_assert(DoctorCheck<CloudKitEntitlementCheck>);

} // namespace kelvane
