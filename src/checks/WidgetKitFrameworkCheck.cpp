#include "checks/WidgetKitFrameworkCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/BuiltValues.h"
#include "checks/CheckSupport.h"
#include "diagnostics/JoinLines.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace kelvane {
namespace {

constexpr const char* kCheckID = "widgetkit.framework.missing";

constexpr const char* kNoWidgetsTitle = "No Widget Extensions";
constexpr const char* kNoWidgetsDescription =
    "This project does not contain any widget extensions.";
constexpr const char* kNoWidgetsImpact =
    "WidgetKit framework validation is not applicable to this project.";

constexpr const char* kLinkedTitle = "WidgetKit Framework Linked";
constexpr const char* kLinkedDescriptionHead =
    "All widget extensions correctly link WidgetKit.framework.\n\nWidgets: ";
constexpr const char* kLinkedImpact = "Widget extensions will function correctly at runtime.";

constexpr const char* kMissingTitle = "WidgetKit Framework Not Linked";
constexpr const char* kMissingDescriptionHead =
    "Widget extensions must link WidgetKit.framework to function correctly.\n\n"
    "Missing WidgetKit.framework in: ";
constexpr const char* kMissingDescriptionTail =
    "\n\nWidgetKit is the core framework that provides:\n"
    "• Timeline management\n"
    "• Widget rendering\n"
    "• Configuration providers\n"
    "• Preview providers\n\n"
    "Without this framework, the widget extension will fail at runtime with unresolved symbol "
    "errors.";
constexpr const char* kMissingImpact =
    "Widget extensions will fail at runtime with missing symbol errors. The widget will not "
    "appear on the home screen or in the widget gallery.";
constexpr const char* kEvidenceKey = "Linked Frameworks";
constexpr const char* kNoFrameworks = "(none)";

constexpr const char* kFixSummary = "Link WidgetKit.framework";
constexpr const char* kFixWarning = "This will add WidgetKit.framework to your project.";

constexpr const char* kWidgetKit = "WidgetKit.framework";

// As built, a widget that does not link WidgetKit still gets it through
// module autolinking, Xcode's default: `import WidgetKit` in Swift, or
// `@import`, records the framework in the object file. Only a widget with
// autolinking turned off and no explicit link fails.
constexpr const char* kAutolinkSetting = "CLANG_MODULES_AUTOLINK";
constexpr const char* kBuiltLinkedDescription =
    "Every widget extension links WidgetKit.framework, explicitly or through module autolinking.";
constexpr const char* kBuiltMissingHead =
    "Widget extensions must link WidgetKit.framework to function correctly.\n\n"
    "Missing WidgetKit.framework, with module autolinking turned off, in:\n";
constexpr const char* kBuiltAutolinkOff = " (CLANG_MODULES_AUTOLINK = ";
constexpr const char* kBuiltAutolinkOffEnd = ")";
constexpr const char* kAutolinkOn = "YES";

// A plain, case-sensitive substring test, so a path around the name passes
// ("System/Library/Frameworks/WidgetKit.framework") and so does
// "MyWidgetKit.framework".
bool linksWidgetKit(const TargetContext& widget) {
    return std::any_of(
        widget.linkedFrameworks.begin(), widget.linkedFrameworks.end(),
        [](const std::string& entry) { return entry.find(kWidgetKit) != std::string::npos; });
}

std::vector<BuiltFinding> builtFindings(const ProjectContext& context) {
    std::vector<BuiltFinding> findings;
    for (const TargetContext& widget : context.targets) {
        // Unset or unknown, autolinking is on.
        const TracedValue* autolink = widget.built->setting(kAutolinkSetting);
        if (widget.type != TargetType::widgetExtension || linksWidgetKit(widget) ||
            autolink == nullptr || builtFlag(widget, kAutolinkSetting, true)) {
            continue;
        }
        const std::string line =
            widget.name + kBuiltAutolinkOff + autolink->value + kBuiltAutolinkOffEnd;
        findings.push_back(BuiltFinding{
            .key = line,
            .line = line,
            .severity = Severity::error,
            .evidence = {EvidenceItem{FrameworkReferenceSource{widget.name}, kEvidenceKey,
                                      widget.linkedFrameworks.empty()
                                          ? kNoFrameworks
                                          : join(widget.linkedFrameworks, ", "),
                                      kWidgetKit},
                         builtSettingEvidence(widget, kAutolinkSetting, kAutolinkOn)},
            .targets = {makeTargetRef(widget)},
            .steps = {FixStep{std::string("Add ") + kWidgetKit + " to '" + widget.name + "' target",
                              AddFrameworkReference{widget.name, kWidgetKit}}}});
    }
    return findings;
}

std::optional<DoctorIssue> runAsBuilt(const ProjectContext& context) {
    bool anyWidget = false;
    for (const ProjectContext* configuration : checkedConfigurations(context)) {
        anyWidget = anyWidget || !configuration->targetsOfType(TargetType::widgetExtension).empty();
    }
    if (!anyWidget) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kNoWidgetsTitle,
                           .description = kNoWidgetsDescription,
                           .impact = kNoWidgetsImpact};
    }
    const std::vector<MergedFinding> findings = findAcrossConfigurations(context, builtFindings);
    if (findings.empty()) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kLinkedTitle,
                           .description = kBuiltLinkedDescription,
                           .impact = kLinkedImpact};
    }
    return builtIssue(kCheckID, kMissingTitle, kBuiltMissingHead, findings, kMissingDescriptionTail,
                      kMissingImpact,
                      DoctorFix{.summary = kFixSummary,
                                .safety = FixSafety::requiresConfirmation,
                                .steps = {},
                                .warningMessage = kFixWarning});
}

} // namespace

std::string WidgetKitFrameworkCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue> WidgetKitFrameworkCheck::run(const ProjectContext& context) const {
    if (isAsBuilt(context)) {
        return runAsBuilt(context);
    }
    const auto widgets = context.targetsOfType(TargetType::widgetExtension);
    if (widgets.empty()) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kNoWidgetsTitle,
                           .description = kNoWidgetsDescription,
                           .impact = kNoWidgetsImpact};
    }

    std::vector<TargetContext> missing;
    std::copy_if(widgets.begin(), widgets.end(), std::back_inserter(missing),
                 [](const TargetContext& widget) { return !linksWidgetKit(widget); });
    if (missing.empty()) {
        return DoctorIssue{.id = kCheckID,
                           .severity = Severity::success,
                           .title = kLinkedTitle,
                           .description = kLinkedDescriptionHead + joinNames(widgets),
                           .impact = kLinkedImpact,
                           .affectedTargets = makeTargetRefs(widgets)};
    }

    std::vector<EvidenceItem> evidence;
    std::vector<FixStep> steps;
    for (const auto& widget : missing) {
        evidence.push_back(EvidenceItem{
            FrameworkReferenceSource{widget.name}, kEvidenceKey,
            widget.linkedFrameworks.empty() ? kNoFrameworks : join(widget.linkedFrameworks, ", "),
            kWidgetKit});
        steps.push_back(
            FixStep{std::string("Add ") + kWidgetKit + " to '" + widget.name + "' target",
                    AddFrameworkReference{widget.name, kWidgetKit}});
    }
    return DoctorIssue{.id = kCheckID,
                       .severity = Severity::error,
                       .title = kMissingTitle,
                       .description =
                           kMissingDescriptionHead + joinNames(missing) + kMissingDescriptionTail,
                       .impact = kMissingImpact,
                       .evidence = std::move(evidence),
                       .affectedTargets = makeTargetRefs(missing),
                       .fix = DoctorFix{.summary = kFixSummary,
                                        .safety = FixSafety::requiresConfirmation,
                                        .steps = std::move(steps),
                                        .warningMessage = kFixWarning}};
}

} // namespace kelvane
