#include "checks/WatchCompanionMismatchCheck.h"

#include "checks/CheckSupport.h"
#include "checks/DoctorCheck.h"
#include "model/FilePath.h"

#include <string_view>
#include <utility>

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

} // namespace

std::optional<DoctorIssue> WatchCompanionMismatchCheck::run(const ProjectContext& context) const {
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
