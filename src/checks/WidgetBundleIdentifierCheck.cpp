#include "checks/WidgetBundleIdentifierCheck.h"

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

struct InvalidWidget {
    const TargetContext* widget;
    const char* reason;
};

} // namespace

std::string WidgetBundleIdentifierCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue> WidgetBundleIdentifierCheck::run(const ProjectContext& context) const {
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
