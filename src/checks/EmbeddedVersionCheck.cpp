#include "checks/EmbeddedVersionCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/CheckSupport.h"

#include <array>
#include <utility>

namespace kelvane {
namespace {

constexpr const char* kCheckID = "embedded.version.mismatch";

constexpr const char* kMatchTitle = "Embedded Versions Match";
constexpr const char* kMatchDescription =
    "Every extension, widget, watch app and App Clip ships the version and build number of the "
    "app that embeds it.";
constexpr const char* kMatchImpact = "No version warnings expected on upload.";

constexpr const char* kMismatchTitle = "Embedded Version Mismatch";
constexpr const char* kMismatchHead =
    "Content an app embeds ships other version strings than the app:\n";
constexpr const char* kMismatchTail =
    "\n\nApp Store Connect expects an app extension, widget, watch app or App Clip to carry "
    "the CFBundleShortVersionString and CFBundleVersion of the app that contains it, and warns "
    "on every upload that does not.";
constexpr const char* kMismatchImpact =
    "Each upload is flagged, and a build number that runs behind the app's can make App Store "
    "Connect refuse a later one.";
constexpr const char* kFixSummary = "Give embedded content the app's versions";
constexpr const char* kFixWarning =
    "Set the versions where the app sets them (usually MARKETING_VERSION and "
    "CURRENT_PROJECT_VERSION at project level or in a shared .xcconfig), so every target "
    "inherits them.";

struct VersionKey {
    const char* plistKey;
    const char* setting; // the setting a generated or templated Info.plist takes it from
    const char* label;
};
constexpr std::array kVersionKeys{
    VersionKey{"CFBundleShortVersionString", "MARKETING_VERSION", "version"},
    VersionKey{"CFBundleVersion", "CURRENT_PROJECT_VERSION", "build number"},
};

bool heldToAppVersion(TargetType type) {
    switch (type) {
    case TargetType::appExtension:
    case TargetType::widgetExtension:
    case TargetType::watchApp:
    case TargetType::watchExtension:
    case TargetType::appClip:
    case TargetType::messagesExtension:
        return true;
    default:
        return false;
    }
}

// The version as shipped; nothing when the target has no Info.plist or the
// value could not be known.
std::optional<std::string> shipped(const TargetContext& target, const char* key) {
    if (!target.built || !target.built->infoPlist) {
        return std::nullopt;
    }
    const std::string* value = plist::findString(*target.built->infoPlist, key);
    return value && !value->empty() ? std::optional<std::string>(*value) : std::nullopt;
}

// Where a shipped version came from: the setting when it holds that value
// (a generated key, or `$(MARKETING_VERSION)` in the file), else the file.
EvidenceItem versionEvidence(const TargetContext& target, const VersionKey& key,
                             const std::string& value, std::optional<std::string> expected) {
    const TracedValue* setting = target.built->setting(key.setting);
    if (setting != nullptr && setting->value == value) {
        return builtSettingEvidence(target, key.setting, std::move(expected));
    }
    return builtInfoPlistEvidence(target, key.plistKey, value, std::move(expected));
}

std::vector<BuiltFinding> builtFindings(const ProjectContext& context) {
    std::vector<BuiltFinding> findings;
    for (const ShippingUnit& unit : shippingUnits(context)) {
        for (const TargetContext* content : unit.content) {
            // Frameworks, login items and helper tools carry their own
            // versions; only the bundles App Store Connect holds to the app's
            // are compared.
            if (!heldToAppVersion(content->type)) {
                continue;
            }
            for (const VersionKey& key : kVersionKeys) {
                const auto appVersion = shipped(*unit.app, key.plistKey);
                const auto contentVersion = shipped(*content, key.plistKey);
                if (!appVersion || !contentVersion || *appVersion == *contentVersion) {
                    continue;
                }
                const std::string line = content->name + " ships " + key.label + " " +
                                         *contentVersion + ", " + unit.app->name + " ships " +
                                         *appVersion + " (" + key.plistKey + ")";
                findings.push_back(BuiltFinding{
                    .key = line,
                    .line = line,
                    .severity = Severity::warning,
                    .evidence = {versionEvidence(*unit.app, key, *appVersion, std::nullopt),
                                 versionEvidence(*content, key, *contentVersion, *appVersion)},
                    .targets = {makeTargetRef(*unit.app), makeTargetRef(*content)},
                    .steps = {setBuildSettingStep("Set " + content->name + " " + key.setting +
                                                      " to '" + *appVersion + "'",
                                                  content->name, key.setting, *appVersion)},
                });
            }
        }
    }
    return findings;
}

} // namespace

std::string EmbeddedVersionCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue> EmbeddedVersionCheck::run(const ProjectContext& context) const {
    return runAsBuiltOnly(context,
                          BuiltCheckTexts{kCheckID, kMatchTitle, kMatchDescription, kMatchImpact, kMismatchTitle, kMismatchHead, kMismatchTail, kMismatchImpact,
                                          DoctorFix{.summary = kFixSummary,
                                .safety = FixSafety::requiresConfirmation,
                                .warningMessage = kFixWarning}},
                          builtFindings);
}

} // namespace kelvane
