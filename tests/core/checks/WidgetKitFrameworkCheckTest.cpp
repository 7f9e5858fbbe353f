#include "checks/WidgetKitFrameworkCheck.h"

#include "BuiltOutcomes.h"
#include "BuiltProjects.h"
#include "CheckOutcomes.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

using test::Headline;
using test::project;
using test::Target;
using enum TargetType;

constexpr const char* kID = "widgetkit.framework.missing";

const Headline kNoWidgets{kID, Severity::success, "No Widget Extensions"};
const Headline kLinked{kID, Severity::success, "WidgetKit Framework Linked"};
const Headline kNotLinked{kID, Severity::error, "WidgetKit Framework Not Linked"};

ProjectContext widgetLinking(std::vector<std::string> frameworks) {
    return project({Target("Widget", widgetExtension).frameworks(std::move(frameworks))});
}

EvidenceItem linkedEvidence(std::string widget, std::string value) {
    return {FrameworkReferenceSource{std::move(widget)}, "Linked Frameworks", std::move(value),
            "WidgetKit.framework"};
}

FixStep linkStep(std::string widget) {
    return {"Add WidgetKit.framework to '" + widget + "' target",
            AddFrameworkReference{widget, "WidgetKit.framework"}};
}

DoctorIssue notLinked(std::string names, std::vector<EvidenceItem> evidence,
                      std::vector<TargetRef> affected, std::vector<FixStep> steps) {
    return DoctorIssue{
        .id = kID,
        .severity = Severity::error,
        .title = "WidgetKit Framework Not Linked",
        .description = "Widget extensions must link WidgetKit.framework to function "
                       "correctly.\n\nMissing WidgetKit.framework in: " +
                       names +
                       "\n\nWidgetKit is the core framework that provides:\n• Timeline "
                       "management\n• Widget rendering\n• Configuration providers\n• Preview "
                       "providers\n\nWithout this framework, the widget extension will fail at "
                       "runtime with unresolved symbol errors.",
        .impact = "Widget extensions will fail at runtime with missing symbol errors. The widget "
                  "will not appear on the home screen or in the widget gallery.",
        .evidence = std::move(evidence),
        .affectedTargets = std::move(affected),
        .fix = DoctorFix{.summary = "Link WidgetKit.framework",
                         .safety = FixSafety::requiresConfirmation,
                         .steps = std::move(steps),
                         .warningMessage = "This will add WidgetKit.framework to your project."}};
}

TEST(WidgetKitFrameworkCheck, Outcomes) {
    test::expectOutcomes(
        WidgetKitFrameworkCheck{},
        {
            {"no-targets", project({}), kNoWidgets},
            // Other targets are never examined, WidgetKit or not.
            {"app-and-watch-without-widgetkit",
             project({Target("App", application), Target("Watch", watchExtension)}), kNoWidgets},
            {"widgetkit-linked", widgetLinking({"SwiftUI.framework", "WidgetKit.framework"}),
             kLinked},
            {"widgetkit-linked-by-path",
             widgetLinking({"System/Library/Frameworks/WidgetKit.framework"}), kLinked},
            // A plain substring test: a longer name that contains it passes.
            {"widgetkit-inside-longer-name", widgetLinking({"MyWidgetKit.framework"}), kLinked},
            {"widgetkit-in-lowercase", widgetLinking({"widgetkit.framework"}), kNotLinked},
            {"widgetkit-extras-only", widgetLinking({"WidgetKitExtras.framework"}), kNotLinked},
            {"all-widgets-linked",
             project({Target("App", application),
                      Target("Weather", widgetExtension)
                          .bundleID("com.x.weather")
                          .frameworks({"WidgetKit.framework"}),
                      Target("Stocks", widgetExtension).frameworks({"WidgetKit.framework"})}),
             DoctorIssue{.id = kID,
                         .severity = Severity::success,
                         .title = "WidgetKit Framework Linked",
                         .description = "All widget extensions correctly link "
                                        "WidgetKit.framework.\n\nWidgets: Weather, Stocks",
                         .impact = "Widget extensions will function correctly at runtime.",
                         .affectedTargets = {{"Weather", widgetExtension, "com.x.weather"},
                                             {"Stocks", widgetExtension, std::nullopt}}}},
            {"one-widget-linked-two-missing",
             project({Target("Weather", widgetExtension).frameworks({"WidgetKit.framework"}),
                      Target("Stocks", widgetExtension)
                          .bundleID("com.x.stocks")
                          .frameworks({"SwiftUI.framework", "Intents.framework"}),
                      Target("Empty", widgetExtension)}),
             notLinked("Stocks, Empty",
                       {linkedEvidence("Stocks", "SwiftUI.framework, Intents.framework"),
                        linkedEvidence("Empty", "(none)")},
                       {{"Stocks", widgetExtension, "com.x.stocks"},
                        {"Empty", widgetExtension, std::nullopt}},
                       {linkStep("Stocks"), linkStep("Empty")})},
        });
}

TEST(WidgetKitFrameworkAsBuilt, AutolinkingCountsAsLinking) {
    using test::builtProject;
    using test::BuiltTarget;
    const auto widget = [] {
        return BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded)
            .host("App");
    };
    const TargetContext app = BuiltTarget("App", application, Platform::iOS, TargetRole::app);
    test::expectBuiltOutcomes(
        WidgetKitFrameworkCheck(),
        {
            {"no widget", builtProject({app}), kID, Severity::success, "No Widget Extensions", ""},
            {"autolinked by default", builtProject({app, widget()}), kID, Severity::success,
             "WidgetKit Framework Linked", "explicitly or through module autolinking"},
            {"an autolink setting that cannot be known",
             builtProject(
                 {app, widget().unknown("CLANG_MODULES_AUTOLINK", "Base.xcconfig is missing")}),
             kID, Severity::success, "WidgetKit Framework Linked", ""},
            {"linked explicitly with autolinking off",
             builtProject(
                 {app, widget()
                           .setting("CLANG_MODULES_AUTOLINK", "NO")
                           .frameworks({"System/Library/Frameworks/WidgetKit.framework"})}),
             kID, Severity::success, "WidgetKit Framework Linked", ""},
            {"autolinking off and no link",
             builtProject({app, widget().setting("CLANG_MODULES_AUTOLINK", "NO")}), kID,
             Severity::error, "WidgetKit Framework Not Linked",
             "• Widget (CLANG_MODULES_AUTOLINK = NO) (Debug, Release)"},
            {"any value not starting with Y, T or 1-9 is off",
             builtProject({app, widget().setting("CLANG_MODULES_AUTOLINK", "0")}), kID,
             Severity::error, "WidgetKit Framework Not Linked", "CLANG_MODULES_AUTOLINK = 0"},
        });
}

} // namespace
} // namespace kelvane
