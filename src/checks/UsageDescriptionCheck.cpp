#include "checks/UsageDescriptionCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/CheckSupport.h"
#include "checks/EntitlementsReader.h"
#include "diagnostics/JoinLines.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace kelvane {
namespace {

using namespace std::string_view_literals;

constexpr const char* kCheckID = "usage.description.missing";

constexpr const char* kPresentTitle = "Purpose Strings Present";
constexpr const char* kPresentDescription =
    "Every capability and background mode that always needs a purpose string or entitlement "
    "has it.";
constexpr const char* kPresentImpact = "No missing-purpose-string rejection expected.";

constexpr const char* kMissingTitle = "Purpose String Missing";
constexpr const char* kMissingHead =
    "Capabilities the project declares need keys the built app lacks:\n";
constexpr const char* kMissingTail =
    "\n\nThe system terminates an app that asks for these services without the purpose string "
    "(or entitlement) listed, and App Store validation rejects the upload. Generated keys "
    "(INFOPLIST_KEY_…) count as present.";
constexpr const char* kMissingImpact =
    "The app crashes the first time it uses the capability, or the upload is rejected.";
constexpr const char* kFixSummary = "Add the missing keys";

enum class Where { entitlements, backgroundMode };
enum class Needs { infoPlistKey, entitlement };

// One rule: a declaration that always needs one of `needed`. Each row holds
// only because the declaration exists for the use that needs the key.
struct UsageRule {
    Where where;
    std::string_view declaration; // entitlement key, or UIBackgroundModes value
    Needs needs;
    std::array<std::string_view, 3> needed; // any one of them will do
    std::string_view reason;
};

constexpr std::array kUsageRules{
    // Reading health data is the reason for the entitlement; the request for
    // it terminates the app without a share description.
    UsageRule{Where::entitlements, "com.apple.developer.healthkit"sv, Needs::infoPlistKey,
              {"NSHealthShareUsageDescription"sv, ""sv, ""sv},
              "HealthKit authorization requires it"sv},
    // The HomeKit entitlement exists only to reach the home database, whose
    // first access terminates an app without the description.
    UsageRule{Where::entitlements, "com.apple.developer.homekit"sv, Needs::infoPlistKey,
              {"NSHomeKitUsageDescription"sv, ""sv, ""sv},
              "HomeKit access requires it"sv},
    // Not the Siri entitlement: donating shortcuts and handling intents use
    // it without ever asking for authorization, so its description is not
    // always needed.
    // Background location updates need location authorization, which needs
    // one of the location descriptions.
    UsageRule{Where::backgroundMode, "location"sv, Needs::infoPlistKey,
              {"NSLocationAlwaysAndWhenInUseUsageDescription"sv,
               "NSLocationWhenInUseUsageDescription"sv, "NSLocationAlwaysUsageDescription"sv},
              "location updates need location authorization"sv},
    // Since iOS 13 any Core Bluetooth use needs the "always" description;
    // the background mode exists only for that use.
    UsageRule{Where::backgroundMode, "bluetooth-central"sv, Needs::infoPlistKey,
              {"NSBluetoothAlwaysUsageDescription"sv, ""sv, ""sv},
              "Core Bluetooth requires it"sv},
    // Remote-notification wake-ups come through APNs, which only an app
    // with the push entitlement can register for.
    UsageRule{Where::backgroundMode, "remote-notification"sv, Needs::entitlement,
              {"aps-environment"sv, ""sv, ""sv},
              "remote notifications need the push entitlement"sv},
};

// A WatchKit 2 app bundle holds no code: its extension uses the services and
// holds the keys and entitlements, so the bundle's own are not evidence.
bool isCodelessWatchContainer(const TargetContext& target) {
    return target.built->productType.ends_with("application.watchapp2") ||
           target.built->productType.ends_with("application.watchapp");
}

bool hasBackgroundMode(const plist::Dictionary& info, std::string_view mode) {
    const plist::Array* modes = plist::findArray(info, "UIBackgroundModes");
    for (std::size_t i = 0; modes != nullptr && i < modes->size(); ++i) {
        const std::string* value = (*modes)[i].asString();
        if (value != nullptr && *value == mode) {
            return true;
        }
    }
    return false;
}

std::vector<BuiltFinding> builtFindings(const ProjectContext& context) {
    std::vector<BuiltFinding> findings;
    for (const TargetContext& target : context.targets) {
        if (!target.built || !target.built->infoPlist ||
            (target.built->role != TargetRole::app && target.built->role != TargetRole::embedded) ||
            isCodelessWatchContainer(target)) {
            continue;
        }
        const BuiltFacts& facts = *target.built;
        const auto isUnknown = [&facts](std::string_view name) {
            return std::any_of(facts.unknown.begin(), facts.unknown.end(),
                               [&](const UnknownSetting& setting) { return setting.name == name; });
        };
        // What the model cannot see, the check does not claim is missing.
        const bool infoPlistCertain =
            !isUnknown("GENERATE_INFOPLIST_FILE") && !facts.generatedKeysUnknown;
        const bool entitlementsCertain =
            !isUnknown("CODE_SIGN_ENTITLEMENTS") && !facts.entitlementsError &&
            (facts.setting("CODE_SIGN_ENTITLEMENTS") == nullptr ||
             facts.setting("CODE_SIGN_ENTITLEMENTS")->value.empty() || target.entitlementsURL);
        const plist::Dictionary& info = *target.built->infoPlist;
        const plist::Dictionary entitlements = target.built->entitlements.value_or(plist::Dictionary{});
        for (const UsageRule& rule : kUsageRules) {
            const bool declared = rule.where == Where::entitlements
                                      ? entitlements.find(rule.declaration) != nullptr
                                      : hasBackgroundMode(info, rule.declaration);
            if (!declared || !entitlementsCertain ||
                (rule.needs == Needs::infoPlistKey && !infoPlistCertain)) {
                continue;
            }
            const plist::Dictionary& holder = rule.needs == Needs::entitlement ? entitlements : info;
            std::vector<std::string> options;
            bool present = false;
            for (const std::string_view key : rule.needed) {
                if (!key.empty()) {
                    options.emplace_back(key);
                    present = present || holder.find(key) != nullptr;
                }
            }
            if (present) {
                continue;
            }
            const std::string declaration =
                rule.where == Where::entitlements
                    ? "the " + std::string(rule.declaration) + " entitlement"
                    : "the " + std::string(rule.declaration) + " background mode";
            const std::string line = target.name + " declares " + declaration + " without " +
                                     join(options, " or ") + " (" + std::string(rule.reason) + ")";
            BuiltFinding finding{.key = line,
                                 .line = line,
                                 .severity = Severity::error,
                                 .evidence = {},
                                 .targets = {makeTargetRef(target)},
                                 .steps = {}};
            finding.evidence.push_back(
                rule.where == Where::entitlements
                    ? builtEntitlementEvidence(target, std::string(rule.declaration), "present")
                    : builtInfoPlistEvidence(target, "UIBackgroundModes",
                                             std::string(rule.declaration)));
            finding.evidence.push_back(
                rule.needs == Needs::entitlement
                    ? builtEntitlementEvidence(target, options.front(), "(missing)", "present")
                    : builtInfoPlistEvidence(target, options.front(), "(missing)",
                                             "a sentence saying why the app uses it"));
            finding.steps.push_back(FixStep{
                "Add " + options.front() + " to " + target.name,
                ManualInstruction{{rule.needs == Needs::entitlement
                                       ? "Enable Push Notifications in Signing & Capabilities"
                                       : "Add INFOPLIST_KEY_" + options.front() +
                                             " (or the key in Info.plist) with a sentence for the "
                                             "user"}}});
            findings.push_back(std::move(finding));
        }
    }
    return findings;
}

} // namespace

std::string UsageDescriptionCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue> UsageDescriptionCheck::run(const ProjectContext& context) const {
    return runAsBuiltOnly(context,
                          BuiltCheckTexts{kCheckID, kPresentTitle, kPresentDescription, kPresentImpact, kMissingTitle, kMissingHead, kMissingTail, kMissingImpact,
                                          DoctorFix{.summary = kFixSummary, .safety = FixSafety::manualOnly,
                                .warningMessage = {}}},
                          builtFindings);
}

} // namespace kelvane
