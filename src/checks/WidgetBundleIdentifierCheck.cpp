#include "checks/WidgetBundleIdentifierCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/BuiltValues.h"
#include "checks/CheckSupport.h"

#include <vector>

namespace kelvane {
namespace {

constexpr const char* kCheckID = "widget.bundle.identifier.invalid";

constexpr const char* kNoWidgetsTitle = "No Widget Extensions";
constexpr const char* kNoWidgetsDescription =
    "This project does not contain any widget extensions.";
constexpr const char* kNoWidgetsImpact =
    "Widget bundle identifier validation is not applicable to this project.";

constexpr const char* kValidTitle = "Widget Bundle Identifiers Valid";
constexpr const char* kValidDescriptionHead =
    "All widget extension bundle identifiers are correctly configured.\n\nWidgets: ";
constexpr const char* kValidImpact = "Widget extensions will load and install correctly.";

constexpr const char* kInvalidTitle = "Invalid Widget Bundle Identifier";
constexpr const char* kInvalidDescriptionHead =
    "Widget extension bundle identifiers must be properly namespaced under the iOS app bundle "
    "identifier.\n\nExpected format: ";
// The description shows ".<widget-name>" and the evidence ".<widget-suffix>":
// the two placeholders differ on purpose.
constexpr const char* kInvalidDescriptionFormat = ".<widget-name>\n\nInvalid widgets: ";
constexpr const char* kInvalidDescriptionTail =
    "\n\nEach widget extension's bundle identifier must:\n"
    "• Start with the iOS app bundle identifier\n"
    "• Be followed by a dot (.)\n"
    "• Include a unique suffix for the widget\n"
    "• NOT be identical to the app bundle identifier";
constexpr const char* kExpectedSuffix = ".<widget-suffix>";
constexpr const char* kInvalidImpact =
    "Widgets with invalid bundle identifiers will not load or install. The iOS system requires "
    "widget extensions to be properly namespaced under the containing app's bundle identifier.";

constexpr const char* kFixSummary = "Update Widget Bundle Identifiers";
constexpr const char* kFixWarning = "This will modify your project's build settings.";

constexpr const char* kBundleIdentifierSetting = "PRODUCT_BUNDLE_IDENTIFIER";

// Why a widget was rejected. Kept with each finding for whoever debugs the
// check; the issue itself deliberately does not show it.
constexpr const char* kIdenticalReason =
    "Bundle identifier is identical to the app bundle identifier";
constexpr const char* kNotUnderAppReason =
    "Bundle identifier does not start with app bundle identifier";

// As built, every bundle Xcode embeds under an app's identifier is held to
// its own host's: extensions, widgets, watch apps, a watch app's extension
// and App Clips. The widget texts stay for projects where only widgets are
// wrong.
constexpr const char* kBuiltValidTitle = "Embedded Bundle Identifiers Valid";
constexpr const char* kBuiltValidDescription =
    "Every app extension, widget, watch app and App Clip has a bundle identifier that starts with "
    "its host's identifier and a dot.";
constexpr const char* kBuiltValidImpact = "Embedded content will build and install with its app.";
constexpr const char* kBuiltInvalidTitle = "Embedded Bundle Identifier Not Prefixed";
constexpr const char* kBuiltInvalidHead =
    "Xcode embeds a bundle only when its identifier starts with its host's identifier followed by "
    "a dot:\n";
constexpr const char* kBuiltInvalidTail =
    "\n\nThis holds for app extensions, widgets, watch apps (and a watch app's extension) and App "
    "Clips; embedded frameworks are exempt.";
constexpr const char* kBuiltInvalidImpact =
    "The build fails when it validates the embedded bundle, and the app cannot be installed or "
    "submitted until the identifiers are fixed.";
constexpr const char* kBuiltFixSummary = "Update Embedded Bundle Identifiers";
constexpr const char* kBuiltIsNotUnder = " is not under ";
constexpr const char* kBuiltExpectedSuffix = ".<suffix>";

struct InvalidWidget {
    const TargetContext* widget;
    const char* reason;
};

// What Xcode's embedding validation covers; libraries and login items are
// embedded too but keep identifiers of their own.
bool heldToHostPrefix(const TargetContext& target) {
    switch (target.type) {
    case TargetType::appExtension:
    case TargetType::widgetExtension:
    case TargetType::messagesExtension:
    case TargetType::watchApp:
    case TargetType::watchExtension:
    case TargetType::appClip:
        return true;
    default:
        return false;
    }
}

// "com.a.app" and "com.a.widget" give "com.a.app.widget": the identifier's
// own last component keeps the name the developer chose.
std::string prefixedIdentifier(const std::string& hostID, const std::string& id) {
    const std::size_t dot = id.rfind('.');
    return hostID + "." + (dot == std::string::npos ? id : id.substr(dot + 1));
}

std::vector<BuiltFinding> builtFindings(const ProjectContext& context, bool& onlyWidgets) {
    std::vector<BuiltFinding> findings;
    for (const TargetContext& target : context.targets) {
        const TargetContext* host = hostOf(context, target);
        if (target.built->role != TargetRole::embedded || !heldToHostPrefix(target) ||
            host == nullptr || !target.bundleIdentifier || !host->bundleIdentifier) {
            continue;
        }
        const std::string& id = *target.bundleIdentifier;
        const std::string& hostID = *host->bundleIdentifier;
        if (id.starts_with(hostID + ".")) {
            continue;
        }
        onlyWidgets = onlyWidgets && target.type == TargetType::widgetExtension;
        const std::string line =
            target.name + " (" + id + ")" + kBuiltIsNotUnder + host->name + " (" + hostID + ")";
        const std::string suggestion = prefixedIdentifier(hostID, id);
        findings.push_back(BuiltFinding{
            .key = line,
            .line = line,
            .severity = Severity::error,
            .evidence = {bundleIdentifierEvidence(*host),
                         bundleIdentifierEvidence(target, hostID + kBuiltExpectedSuffix)},
            .targets = {makeTargetRef(target)},
            .steps = {
                setBuildSettingStep("Update " + target.name + " bundle identifier to " + suggestion,
                                    target.name, kBundleIdentifierSetting, suggestion)}});
    }
    return findings;
}

std::optional<DoctorIssue> runAsBuilt(const ProjectContext& context) {
    bool onlyWidgets = true;
    std::vector<MergedFinding> findings =
        findAcrossConfigurations(context, [&](const ProjectContext& configuration) {
            return builtFindings(configuration, onlyWidgets);
        });
    scopeSettingSteps(findings, context);
    if (findings.empty()) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kBuiltValidTitle,
                           .description = kBuiltValidDescription,
                           .impact = kBuiltValidImpact};
    }
    DoctorFix fix{.summary = onlyWidgets ? kFixSummary : kBuiltFixSummary,
                  .safety = FixSafety::requiresConfirmation,
                  .steps = {},
                  .warningMessage = kFixWarning};
    if (onlyWidgets) {
        return builtIssue(kCheckID, kInvalidTitle, kBuiltInvalidHead, findings,
                          kInvalidDescriptionTail, kInvalidImpact, std::move(fix));
    }
    return builtIssue(kCheckID, kBuiltInvalidTitle, kBuiltInvalidHead, findings, kBuiltInvalidTail,
                      kBuiltInvalidImpact, std::move(fix));
}

} // namespace

std::string WidgetBundleIdentifierCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue> WidgetBundleIdentifierCheck::run(const ProjectContext& context) const {
    if (isAsBuilt(context)) {
        return runAsBuilt(context);
    }
    const TargetContext* app = context.mainAppTarget();
    if (app == nullptr || !app->bundleIdentifier) {
        return std::nullopt;
    }
    const std::string& appID = *app->bundleIdentifier;

    const auto widgets = context.targetsOfType(TargetType::widgetExtension);
    if (widgets.empty()) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kNoWidgetsTitle,
                           .description = kNoWidgetsDescription,
                           .impact = kNoWidgetsImpact};
    }

    // Only the prefix is tested: an empty suffix ("com.example.app.") or a
    // nested one passes.
    const std::string prefix = appID + ".";
    std::vector<InvalidWidget> invalid;
    for (const auto& widget : widgets) {
        if (!widget.bundleIdentifier) {
            continue;
        }
        if (*widget.bundleIdentifier == appID) {
            invalid.push_back({&widget, kIdenticalReason});
        } else if (!widget.bundleIdentifier->starts_with(prefix)) {
            invalid.push_back({&widget, kNotUnderAppReason});
        }
    }

    if (invalid.empty()) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kValidTitle,
                           .description = kValidDescriptionHead + joinNames(widgets),
                           .impact = kValidImpact,
                           .affectedTargets = makeTargetRefs(widgets)};
    }

    std::vector<TargetContext> invalidTargets;
    std::vector<EvidenceItem> evidence{
        buildSettingEvidence(app->name, kBundleIdentifierSetting, appID)};
    std::vector<FixStep> steps;
    for (const auto& entry : invalid) {
        const TargetContext& widget = *entry.widget;
        invalidTargets.push_back(widget);
        evidence.push_back(buildSettingEvidence(widget.name, kBundleIdentifierSetting,
                                                *widget.bundleIdentifier, appID + kExpectedSuffix));
        // The name goes in verbatim, blanks and case included.
        const std::string suggestion = prefix + widget.name;
        steps.push_back(
            setBuildSettingStep("Update " + widget.name + " bundle identifier to " + suggestion,
                                widget.name, kBundleIdentifierSetting, suggestion));
    }
    return DoctorIssue{.id = kCheckID,
                       .severity = Severity::error,
                       .title = kInvalidTitle,
                       .description = kInvalidDescriptionHead + appID + kInvalidDescriptionFormat +
                                      joinNames(invalidTargets) + kInvalidDescriptionTail,
                       .impact = kInvalidImpact,
                       .evidence = std::move(evidence),
                       .affectedTargets = makeTargetRefs(invalidTargets),
                       .fix = DoctorFix{.summary = kFixSummary,
                                        .safety = FixSafety::requiresConfirmation,
                                        .steps = std::move(steps),
                                        .warningMessage = kFixWarning}};
}

} // namespace kelvane
