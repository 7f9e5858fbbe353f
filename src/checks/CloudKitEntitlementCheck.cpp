#include "checks/CloudKitEntitlementCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/BuiltValues.h"
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

// As built, each target is held to what its own entitlements ask for: a
// named container is legal whatever its name, and key-value storage alone
// needs none.
constexpr std::string_view kServicesKey = "com.apple.developer.icloud-services";
constexpr std::string_view kCloudKitService = "CloudKit";
constexpr std::string_view kDocumentsService = "CloudDocuments";
constexpr std::string_view kUnknownEntitlementLead = "entitlements ";
constexpr std::string_view kNoContainers = "(none)";
constexpr std::string_view kBuiltValidDescription =
    "Every target that uses CloudKit or iCloud Documents lists its iCloud containers, and every "
    "extension that uses CloudKit shares a container with its host app.";
constexpr std::string_view kBuiltMissingSeparator = "\n\n";
constexpr std::string_view kBuiltUses = " uses ";
constexpr std::string_view kBuiltListsNone = " but lists no iCloud container";
constexpr std::string_view kNotSharedTitle = "iCloud Container Not Shared With Host App";
constexpr std::string_view kNotSharedHead =
    "Extensions that use CloudKit share no iCloud container with the app that hosts them:\n";
constexpr std::string_view kNotSharedImpact =
    "The extension reads and writes another CloudKit database than its app, so records one of "
    "them saves never reach the other.";
constexpr std::string_view kBuiltItsHost = ", its host ";
constexpr std::string_view kBuiltNoneInCommon = ": no container in common";
constexpr std::string_view kFixStepOf = " of ";

struct ContainerHolder {
    const TargetContext* target;
    // In the order the file gives them.
    std::vector<std::string> containers;
};

// What one target's entitlements ask of iCloud, as the build signs them.
struct ICloudUse {
    // The services among CloudKit and CloudDocuments, in file order.
    std::vector<std::string> storage;
    bool cloudKit = false;
    std::vector<std::string> containers;
    // A list whose value could not be known is compared with nothing.
    bool known = true;
};

ICloudUse iCloudUse(const TargetContext& target, const std::string& containerKey) {
    ICloudUse use;
    const plist::Dictionary entitlements = readEntitlements(target);
    if (const plist::Value* services = entitlements.find(kServicesKey)) {
        for (const std::string& service :
             identifierList(*services).value_or(std::vector<std::string>{})) {
            if (service == kCloudKitService || service == kDocumentsService) {
                use.storage.push_back(service);
            }
            use.cloudKit = use.cloudKit || service == kCloudKitService;
        }
    }
    if (const plist::Value* containers = entitlements.find(containerKey)) {
        use.containers = identifierList(*containers).value_or(std::vector<std::string>{});
    }
    use.known = !builtValueUnknown(
        target, {std::string(kUnknownEntitlementLead) + std::string(kServicesKey),
                 std::string(kUnknownEntitlementLead) + containerKey});
    return use;
}

bool shareAny(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    return std::any_of(a.begin(), a.end(), [&](const std::string& container) {
        return std::find(b.begin(), b.end(), container) != b.end();
    });
}

std::string entitlementsFileName(const TargetContext& target) {
    return target.entitlementsURL ? std::string(path::lastComponent(*target.entitlementsURL))
                                  : std::string(kFallbackFileName);
}

// Adds `added` to the target's containers, after those it lists.
FixStep addContainersStep(const TargetContext& target, const std::string& containerKey,
                          std::vector<std::string> containers,
                          const std::vector<std::string>& added) {
    containers.insert(containers.end(), added.begin(), added.end());
    return FixStep{std::string(kFixStepLead) + join(added, ", ") + std::string(kFixStepTrail) +
                       std::string(kFixStepOf) + target.name,
                   UpdateEntitlement{target.name, entitlementsFileName(target), containerKey,
                                     EntitlementValue::array(std::move(containers))}};
}

bool isExtension(const TargetContext& target) {
    return target.type == TargetType::appExtension || target.type == TargetType::widgetExtension ||
           target.type == TargetType::messagesExtension ||
           target.type == TargetType::watchExtension;
}

std::vector<BuiltFinding> builtFindings(const ProjectContext& context,
                                        const std::string& containerKey) {
    std::vector<ICloudUse> uses;
    uses.reserve(context.targets.size());
    for (const TargetContext& target : context.targets) {
        uses.push_back(iCloudUse(target, containerKey));
    }
    const auto useOf = [&](const TargetContext& target) -> const ICloudUse& {
        return uses[static_cast<std::size_t>(&target - context.targets.data())];
    };

    std::vector<BuiltFinding> findings;
    for (const TargetContext& target : context.targets) {
        const ICloudUse& use = useOf(target);
        const TargetRole role = target.built->role;
        if (!use.known || role == TargetRole::testBundle || role == TargetRole::library) {
            continue;
        }
        const TargetContext* host = hostOf(context, target);
        const ICloudUse* hostUse = host != nullptr && useOf(*host).known ? &useOf(*host) : nullptr;
        if (!use.storage.empty() && use.containers.empty()) {
            const std::string line = target.name + std::string(kBuiltUses) +
                                     join(use.storage, ", ") + std::string(kBuiltListsNone);
            BuiltFinding finding{
                .key = line,
                .line = line,
                .severity = Severity::error,
                .evidence = {builtEntitlementEvidence(target, std::string(kServicesKey),
                                                      join(use.storage, ", ")),
                             builtEntitlementEvidence(target, containerKey,
                                                      std::string(kNoContainers))},
                .targets = {makeTargetRef(target)},
                .steps = {}};
            // Content shares its app's containers; an app gets the one
            // Xcode names after it.
            if (hostUse != nullptr && !hostUse->containers.empty()) {
                finding.steps.push_back(
                    addContainersStep(target, containerKey, {}, hostUse->containers));
            } else if (target.bundleIdentifier) {
                finding.steps.push_back(
                    addContainersStep(target, containerKey, {},
                                      {std::string(kContainerPrefix) + *target.bundleIdentifier}));
            }
            findings.push_back(std::move(finding));
            continue;
        }
        if (!isExtension(target) || hostUse == nullptr || !use.cloudKit || !hostUse->cloudKit ||
            use.containers.empty() || hostUse->containers.empty() ||
            shareAny(use.containers, hostUse->containers)) {
            continue;
        }
        const std::string line = target.name + std::string(kBuiltUses) +
                                 join(use.containers, ", ") + std::string(kBuiltItsHost) +
                                 host->name + " " + join(hostUse->containers, ", ") +
                                 std::string(kBuiltNoneInCommon);
        findings.push_back(BuiltFinding{
            .key = line,
            .line = line,
            .severity = Severity::warning,
            .evidence = {builtEntitlementEvidence(target, containerKey, join(use.containers, ", "),
                                                  join(hostUse->containers, ", ")),
                         builtEntitlementEvidence(*host, containerKey,
                                                  join(hostUse->containers, ", "))},
            .targets = {makeTargetRef(target), makeTargetRef(*host)},
            .steps = {
                addContainersStep(target, containerKey, use.containers, hostUse->containers)}});
    }
    return findings;
}

std::optional<DoctorIssue> runAsBuilt(const ProjectContext& context, const std::string& checkID,
                                      const std::string& containerKey) {
    bool usesICloud = false;
    for (const ProjectContext* configuration : checkedConfigurations(context)) {
        for (const TargetContext& target : configuration->targets) {
            const ICloudUse use = iCloudUse(target, containerKey);
            usesICloud = usesICloud || !use.storage.empty() || !use.containers.empty();
        }
    }
    const std::vector<MergedFinding> findings =
        findAcrossConfigurations(context, [&](const ProjectContext& configuration) {
            return builtFindings(configuration, containerKey);
        });
    if (findings.empty()) {
        if (!usesICloud) {
            return std::nullopt;
        }
        return DoctorIssue{.id = checkID,
                           .severity = Severity::success,
                           .title = std::string(kValidTitle),
                           .description = std::string(kBuiltValidDescription),
                           .impact = std::string(kValidImpact)};
    }
    const bool missing = std::any_of(findings.begin(), findings.end(), [](const MergedFinding& m) {
        return m.finding.severity == Severity::error;
    });
    DoctorFix fix{.summary = std::string(kFixSummary),
                  .safety = FixSafety::requiresConfirmation,
                  .steps = {},
                  .warningMessage = std::string(kFixWarning)};
    DoctorIssue issue =
        missing ? builtIssue(checkID, std::string(kMissingTitle),
                             std::string(kNoContainersDescription) +
                                 std::string(kBuiltMissingSeparator),
                             findings, "", std::string(kMissingImpact), std::move(fix))
                : builtIssue(checkID, std::string(kNotSharedTitle), std::string(kNotSharedHead),
                             findings, "", std::string(kNotSharedImpact), std::move(fix));
    if (issue.fix && issue.fix->steps.empty()) {
        issue.fix.reset();
    }
    return issue;
}

} // namespace

std::optional<DoctorIssue> CloudKitEntitlementCheck::run(const ProjectContext& context) const {
    if (isAsBuilt(context)) {
        return runAsBuilt(context, checkID, containerKey);
    }
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
