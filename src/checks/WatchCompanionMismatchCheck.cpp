#include "checks/WatchCompanionMismatchCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/BuiltValues.h"
#include "checks/CheckSupport.h"
#include "checks/DoctorCheck.h"
#include "model/FilePath.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

constexpr std::string_view kCompanionKey = "WKCompanionAppBundleIdentifier";
constexpr std::string_view kBundleIdentifierSetting = "PRODUCT_BUNDLE_IDENTIFIER";
// Used when the Watch app names no Info.plist.
constexpr std::string_view kFallbackFileName = "Info.plist";
// A missing key is its own finding, whatever id the check reports under.
constexpr std::string_view kMissingID = "watch.companion.missing";

constexpr std::string_view kNoWatchTitle = "No Watch App";
constexpr std::string_view kNoWatchDescription = "This project does not contain a Watch app.";
constexpr std::string_view kNoWatchImpact =
    "Watch companion bundle ID validation is not applicable to this project.";

constexpr std::string_view kNoAppTitle = "No iOS App";
constexpr std::string_view kNoAppDescription = "This project does not contain an iOS app target.";
constexpr std::string_view kNoAppImpact = "Watch companion validation cannot be performed.";

constexpr std::string_view kMissingTitle = "Watch Companion App ID Missing";
constexpr std::string_view kMissingDescription = "The WatchKit app's Info.plist is missing the "
                                                 "required WKCompanionAppBundleIdentifier key.";
constexpr std::string_view kMissingImpact = "Watch app will fail to build or install.";
constexpr std::string_view kAddFixSummary =
    "Add WKCompanionAppBundleIdentifier to Watch app Info.plist";
constexpr std::string_view kAddFixStepLead = "Add WKCompanionAppBundleIdentifier with value '";

constexpr std::string_view kNoAppIDTitle = "Cannot Determine iOS Bundle ID";
constexpr std::string_view kNoAppIDDescription =
    "The iOS app target does not have a bundle identifier configured.";
constexpr std::string_view kNoAppIDImpact =
    "Unable to validate Watch companion bundle ID configuration.";

constexpr std::string_view kValidTitle = "Watch Companion Configuration Valid";
constexpr std::string_view kValidDescription =
    "The WatchKit app's companion bundle identifier correctly matches the iOS app.";
constexpr std::string_view kValidImpact = "No impact - configuration is correct.";

constexpr std::string_view kMismatchTitle = "Watch Companion App ID Mismatch";
constexpr std::string_view kMismatchDescriptionLead =
    "The WatchKit app's WKCompanionAppBundleIdentifier (";
constexpr std::string_view kMismatchDescriptionMiddle =
    ") does not match the iOS app's bundle identifier (";
constexpr std::string_view kMismatchDescriptionTrail = ").";
constexpr std::string_view kMismatchImpact = "Watch app will fail to install or launch. The iOS "
                                             "app and Watch extension cannot communicate.";
constexpr std::string_view kSetFixSummary =
    "Update WKCompanionAppBundleIdentifier to match iOS app";
constexpr std::string_view kSetFixStepLead = "Set WKCompanionAppBundleIdentifier to '";

constexpr std::string_view kQuoteEnd = "'";

// As built, every watch app embedded in an iOS app is compared with that
// app, in every configuration.
constexpr std::string_view kBuiltValidDescription =
    "Every watch app embedded in an iOS app names that app's bundle identifier as its companion.";
constexpr std::string_view kBuiltMismatchHead =
    "A watch app's WKCompanionAppBundleIdentifier must be the bundle identifier of the iOS app "
    "that embeds it:\n";
constexpr std::string_view kBuiltMissingSeparator = "\n\n";
constexpr std::string_view kBuiltNames = " names ";
constexpr std::string_view kBuiltButApp = ", but its iOS app ";
constexpr std::string_view kBuiltIs = " is ";
constexpr std::string_view kBuiltEmbeddedIn = ", embedded in ";
constexpr std::string_view kBuiltHasNoKey = ", has no WKCompanionAppBundleIdentifier";
constexpr std::string_view kGeneratedKeySetting = "INFOPLIST_KEY_WKCompanionAppBundleIdentifier";
constexpr std::string_view kUnknownFileKey = "Info.plist WKCompanionAppBundleIdentifier";
constexpr std::string_view kInfoPlistFileSetting = "INFOPLIST_FILE";
constexpr std::string_view kGenerateSetting = "GENERATE_INFOPLIST_FILE";
constexpr const char* kNotSet = "(not set)";
constexpr std::string_view kContainerProductType = "application.watchapp2-container";

DoctorIssue plainIssue(std::string id, Severity severity, std::string_view title,
                       std::string_view description, std::string_view impact) {
    DoctorIssue issue;
    issue.id = std::move(id);
    issue.severity = severity;
    issue.title = title;
    issue.description = description;
    issue.impact = impact;
    return issue;
}

std::string infoPlistName(const TargetContext& watch) {
    return watch.infoPlistURL ? std::string(path::lastComponent(*watch.infoPlistURL))
                              : std::string(kFallbackFileName);
}

// Both fixes write the same key to the same file; only their wording and how
// freely they may be applied differ.
DoctorFix companionFix(const TargetContext& watch, const std::string& appID,
                       std::string_view summary, FixSafety safety, std::string_view stepLead) {
    return DoctorFix{std::string(summary),
                     safety,
                     {FixStep{std::string(stepLead) + appID + std::string(kQuoteEnd),
                              UpdatePlistKey{watch.name, infoPlistName(watch),
                                             std::string(kCompanionKey), appID}}},
                     std::nullopt};
}

// The iOS app a watch app ships with: the app that embeds it, or, for the
// stub container older watch apps sit in, the app that embeds the container.
// A watch app no iOS app embeds stands alone and names no companion.
const TargetContext* companionApp(const ProjectContext& context, const TargetContext& watch) {
    const TargetContext* host = hostOf(context, watch);
    if (host != nullptr && host->built->productType.ends_with(kContainerProductType)) {
        if (const TargetContext* outer = hostOf(context, *host)) {
            host = outer;
        }
    }
    const bool iOSApp = host != nullptr && host->type == TargetType::application &&
                        host->built->platform == Platform::iOS;
    return iOSApp ? host : nullptr;
}

// An absent key proves nothing when its value could not be known, or when the
// Info.plist the target names is not in the repository.
bool companionUnknown(const TargetContext& watch) {
    if (builtValueUnknown(watch, {kGeneratedKeySetting, kUnknownFileKey, kInfoPlistFileSetting})) {
        return true;
    }
    const TracedValue* file = watch.built->setting(kInfoPlistFileSetting);
    return file != nullptr && !file->value.empty() && !watch.infoPlistURL;
}

// The companion is written where it already comes from: the generated key's
// build setting, or the Info.plist file; a missing key goes to the build
// setting when the target generates its Info.plist.
FixStep builtCompanionStep(const TargetContext& watch, const std::string& appID,
                           std::string_view stepLead, bool generated) {
    std::string description = std::string(stepLead) + appID + std::string(kQuoteEnd);
    if (generated) {
        return setBuildSettingStep(std::move(description), watch.name,
                                   std::string(kGeneratedKeySetting), appID);
    }
    return FixStep{std::move(description), UpdatePlistKey{watch.name, infoPlistName(watch),
                                                          std::string(kCompanionKey), appID}};
}

// `mismatched` is set when a companion names another app.
std::vector<BuiltFinding> builtFindings(const ProjectContext& context, bool& mismatched) {
    std::vector<BuiltFinding> findings;
    for (const TargetContext& watch : context.targets) {
        const TargetContext* app =
            watch.type == TargetType::watchApp ? companionApp(context, watch) : nullptr;
        if (app == nullptr) {
            continue;
        }
        const std::optional<plist::Value> value = watch.infoPlistValue(kCompanionKey);
        const std::string* companion = value ? value->asString() : nullptr;
        if (companion == nullptr) {
            // A value that is no text is as good as none.
            if (value.has_value() || !companionUnknown(watch)) {
                const std::string line = watch.name + std::string(kBuiltEmbeddedIn) + app->name +
                                         std::string(kBuiltHasNoKey);
                BuiltFinding finding{
                    .key = line,
                    .line = line,
                    .severity = Severity::error,
                    .evidence = {builtInfoPlistEvidence(watch, std::string(kCompanionKey), kNotSet,
                                                        app->bundleIdentifier)},
                    .targets = {makeTargetRef(watch)},
                    .steps = {}};
                if (app->bundleIdentifier) {
                    finding.evidence.push_back(bundleIdentifierEvidence(*app));
                    finding.steps.push_back(
                        builtCompanionStep(watch, *app->bundleIdentifier, kAddFixStepLead,
                                           builtFlag(watch, kGenerateSetting, false)));
                }
                findings.push_back(std::move(finding));
            }
            continue;
        }
        if (!app->bundleIdentifier || *companion == *app->bundleIdentifier) {
            continue;
        }
        const std::string& appID = *app->bundleIdentifier;
        const std::string line = watch.name + std::string(kBuiltNames) + *companion +
                                 std::string(kBuiltButApp) + app->name + std::string(kBuiltIs) +
                                 appID;
        mismatched = true;
        findings.push_back(BuiltFinding{
            .key = line,
            .line = line,
            .severity = Severity::error,
            .evidence = {builtInfoPlistEvidence(watch, std::string(kCompanionKey), *companion,
                                                appID),
                         bundleIdentifierEvidence(*app)},
            .targets = {makeTargetRef(watch), makeTargetRef(*app)},
            .steps = {builtCompanionStep(watch, appID, kSetFixStepLead,
                                         watch.built->setting(kGeneratedKeySetting) != nullptr)}});
    }
    return findings;
}

std::optional<DoctorIssue> runAsBuilt(const ProjectContext& context, const std::string& checkID) {
    bool anyWatchApp = false;
    for (const ProjectContext* configuration : checkedConfigurations(context)) {
        anyWatchApp = anyWatchApp || !configuration->targetsOfType(TargetType::watchApp).empty();
    }
    if (!anyWatchApp) {
        return plainIssue(checkID, Severity::success, kNoWatchTitle, kNoWatchDescription,
                          kNoWatchImpact);
    }
    bool mismatched = false;
    std::vector<MergedFinding> findings =
        findAcrossConfigurations(context, [&](const ProjectContext& configuration) {
            return builtFindings(configuration, mismatched);
        });
    scopeSettingSteps(findings, context);
    if (findings.empty()) {
        return plainIssue(checkID, Severity::success, kValidTitle, kBuiltValidDescription,
                          kValidImpact);
    }
    // One wrong value outweighs a missing one; the missing key keeps its own
    // id when it is all there is.
    DoctorIssue issue;
    if (!mismatched) {
        issue = builtIssue(std::string(kMissingID), std::string(kMissingTitle),
                           std::string(kMissingDescription) + std::string(kBuiltMissingSeparator),
                           findings, "", std::string(kMissingImpact),
                           DoctorFix{.summary = std::string(kAddFixSummary),
                                     .safety = FixSafety::requiresConfirmation,
                                     .steps = {},
                                     .warningMessage = std::nullopt});
    } else {
        issue = builtIssue(checkID, std::string(kMismatchTitle), std::string(kBuiltMismatchHead),
                           findings, "", std::string(kMismatchImpact),
                           DoctorFix{.summary = std::string(kSetFixSummary),
                                     .safety = FixSafety::requiresConfirmation,
                                     .steps = {},
                                     .warningMessage = std::nullopt});
    }
    // Without the app's identifier there is no value to propose.
    if (issue.fix && issue.fix->steps.empty()) {
        issue.fix.reset();
    }
    return issue;
}

} // namespace

std::optional<DoctorIssue> WatchCompanionMismatchCheck::run(const ProjectContext& context) const {
    if (isAsBuilt(context)) {
        return runAsBuilt(context, checkID);
    }
    const auto watchApps = context.targetsOfType(TargetType::watchApp);
    if (watchApps.empty()) {
        return plainIssue(checkID, Severity::success, kNoWatchTitle, kNoWatchDescription,
                          kNoWatchImpact);
    }
    const TargetContext& watch = watchApps.front();
    const TargetContext* app = context.mainAppTarget();
    if (app == nullptr) {
        return plainIssue(checkID, Severity::success, kNoAppTitle, kNoAppDescription, kNoAppImpact);
    }

    // A missing key is reported even when the app has no bundle identifier
    // to compare it with; the fix then has no value to propose.
    const std::optional<plist::Value> value = watch.infoPlistValue(kCompanionKey);
    const std::string* companion = value ? value->asString() : nullptr;
    if (companion == nullptr) {
        DoctorIssue issue = plainIssue(std::string(kMissingID), Severity::error, kMissingTitle,
                                       kMissingDescription, kMissingImpact);
        issue.affectedTargets.push_back(makeTargetRef(watch));
        if (app->bundleIdentifier) {
            // Adding a key the developer never wrote deserves a confirmation.
            issue.fix = companionFix(watch, *app->bundleIdentifier, kAddFixSummary,
                                     FixSafety::requiresConfirmation, kAddFixStepLead);
        }
        return issue;
    }

    if (!app->bundleIdentifier) {
        DoctorIssue issue = plainIssue(checkID, Severity::warning, kNoAppIDTitle,
                                       kNoAppIDDescription, kNoAppIDImpact);
        issue.affectedTargets.push_back(makeTargetRef(*app));
        return issue;
    }
    const std::string& appID = *app->bundleIdentifier;
    const bool valid = *companion == appID;

    DoctorIssue issue =
        valid ? plainIssue(checkID, Severity::success, kValidTitle, kValidDescription, kValidImpact)
              : plainIssue(checkID, Severity::error, kMismatchTitle,
                           std::string(kMismatchDescriptionLead) + *companion +
                               std::string(kMismatchDescriptionMiddle) + appID +
                               std::string(kMismatchDescriptionTrail),
                           kMismatchImpact);
    if (watch.infoPlistURL) {
        issue.evidence.push_back(EvidenceItem{PlistSource{watch.name, infoPlistName(watch)},
                                              std::string(kCompanionKey), *companion,
                                              valid ? std::nullopt : std::optional(appID)});
    }
    issue.evidence.push_back(
        buildSettingEvidence(app->name, std::string(kBundleIdentifierSetting), appID));
    issue.affectedTargets = {makeTargetRef(watch), makeTargetRef(*app)};
    if (!valid) {
        // Correcting a value the developer already wrote is safe to apply.
        issue.fix =
            companionFix(watch, appID, kSetFixSummary, FixSafety::safeAuto, kSetFixStepLead);
    }
    return issue;
}

static_assert(DoctorCheck<WatchCompanionMismatchCheck>);

} // namespace kelvane
