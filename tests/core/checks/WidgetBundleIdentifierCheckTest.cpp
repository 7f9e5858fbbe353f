#include "checks/WidgetBundleIdentifierCheck.h"

#include "BuiltOutcomes.h"
#include "BuiltProjects.h"
#include "CheckOutcomes.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

using test::Headline;
using test::NoIssue;
using test::project;
using test::Target;
using enum TargetType;

constexpr const char* kID = "widget.bundle.identifier.invalid";

const Headline kNoWidgets{kID, Severity::success, "No Widget Extensions"};
const Headline kValid{kID, Severity::success, "Widget Bundle Identifiers Valid"};
const Headline kInvalid{kID, Severity::error, "Invalid Widget Bundle Identifier"};

EvidenceItem debugEvidence(std::string target, std::string value,
                           std::optional<std::string> expected = std::nullopt) {
    return {BuildSettingSource{std::move(target), "Debug"}, "PRODUCT_BUNDLE_IDENTIFIER",
            std::move(value), std::move(expected)};
}

FixStep renameStep(std::string widget, std::string suggestion) {
    return {"Update " + widget + " bundle identifier to " + suggestion,
            SetBuildSetting{widget, "All Configurations", "PRODUCT_BUNDLE_IDENTIFIER", suggestion}};
}

ProjectContext appWithWidget(std::string widgetID) {
    return project({Target("App", application).bundleID("com.example.app"),
                    Target("Weather", widgetExtension).bundleID(std::move(widgetID))});
}

TEST(WidgetBundleIdentifierCheck, Outcomes) {
    test::expectOutcomes(
        WidgetBundleIdentifierCheck{},
        {
            {"no-app", project({Target("Weather", widgetExtension).bundleID("x")}), NoIssue{}},
            {"app-without-id",
             project({Target("App", application),
                      Target("Weather", widgetExtension).bundleID("wrong")}),
             NoIssue{}},
            {"no-widgets", project({Target("App", application).bundleID("com.example.app")}),
             kNoWidgets},
            {"widget-id-under-app-id", appWithWidget("com.example.app.weather"), kValid},
            {"widget-id-with-empty-suffix", appWithWidget("com.example.app."), kValid},
            {"widget-id-nested-under-app-id", appWithWidget("com.example.app.a.b"), kValid},
            {"widget-id-equals-app-id", appWithWidget("com.example.app"), kInvalid},
            {"widget-id-without-dot", appWithWidget("com.example.application"), kInvalid},
            {"widget-id-differs-in-case", appWithWidget("com.example.App.weather"), kInvalid},
            // Widgets without an id are neither valid nor invalid, but the
            // valid outcome still lists them.
            {"widgets-without-ids",
             project({Target("App", application).bundleID("com.example.app"),
                      Target("Weather", widgetExtension),
                      Target("Stocks", widgetExtension).bundleID("com.example.app.stocks")}),
             DoctorIssue{
                 .id = kID,
                 .severity = Severity::success,
                 .title = "Widget Bundle Identifiers Valid",
                 .description = "All widget extension bundle identifiers are correctly "
                                "configured.\n\nWidgets: Weather, Stocks",
                 .impact = "Widget extensions will load and install correctly.",
                 .affectedTargets = {{"Weather", widgetExtension, std::nullopt},
                                     {"Stocks", widgetExtension, "com.example.app.stocks"}}}},
            // The suggestion takes the name verbatim, blank and case included.
            {"two-invalid-widgets",
             project({Target("Kit", framework).bundleID("com.example.kit"),
                      Target("App", application).bundleID("com.example.app"),
                      Target("My Widget", widgetExtension).bundleID("com.example.app"),
                      Target("Fine", widgetExtension).bundleID("com.example.app.fine"),
                      Target("Stocks", widgetExtension).bundleID("com.other.stocks")}),
             DoctorIssue{
                 .id = kID,
                 .severity = Severity::error,
                 .title = "Invalid Widget Bundle Identifier",
                 .description =
                     "Widget extension bundle identifiers must be properly namespaced under the "
                     "iOS app bundle identifier.\n\nExpected format: "
                     "com.example.app.<widget-name>\n\nInvalid widgets: My Widget, Stocks\n\nEach "
                     "widget extension's bundle identifier must:\n• Start with the iOS app bundle "
                     "identifier\n• Be followed by a dot (.)\n• Include a unique suffix for the "
                     "widget\n• NOT be identical to the app bundle identifier",
                 .impact = "Widgets with invalid bundle identifiers will not load or install. The "
                           "iOS system requires widget extensions to be properly namespaced under "
                           "the containing app's bundle identifier.",
                 .evidence = {debugEvidence("App", "com.example.app"),
                              debugEvidence("My Widget", "com.example.app",
                                            "com.example.app.<widget-suffix>"),
                              debugEvidence("Stocks", "com.other.stocks",
                                            "com.example.app.<widget-suffix>")},
                 .affectedTargets = {{"My Widget", widgetExtension, "com.example.app"},
                                     {"Stocks", widgetExtension, "com.other.stocks"}},
                 .fix = DoctorFix{.summary = "Update Widget Bundle Identifiers",
                                  .safety = FixSafety::requiresConfirmation,
                                  .steps = {renameStep("My Widget", "com.example.app.My Widget"),
                                            renameStep("Stocks", "com.example.app.Stocks")},
                                  .warningMessage =
                                      "This will modify your project's build settings."}}},
        });
}

TEST(WidgetBundleIdentifierAsBuilt, HoldsEmbeddedContentToItsHostsPrefix) {
    using test::builtConfiguration;
    using test::builtProject;
    using test::BuiltTarget;
    const WidgetBundleIdentifierCheck check;
    const auto app = [](std::string id) {
        return BuiltTarget("App", application, Platform::iOS, TargetRole::app)
            .mainApp()
            .embeds({"Widget", "Watch", "Clip", "Kit"})
            .bundleID(std::move(id));
    };
    const auto embedded = [](std::string name, TargetType type, std::string host, std::string id) {
        return BuiltTarget(std::move(name), type, Platform::iOS, TargetRole::embedded)
            .host(std::move(host))
            .bundleID(std::move(id));
    };
    const TargetContext unknownWidget =
        BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded)
            .host("App")
            .unknown("PRODUCT_BUNDLE_IDENTIFIER", "Ids.xcconfig is missing");

    constexpr const char* kValidTitle = "Embedded Bundle Identifiers Valid";
    constexpr const char* kNotPrefixed = "Embedded Bundle Identifier Not Prefixed";
    test::expectBuiltOutcomes(
        check,
        {
            {"a widget under its app",
             builtProject(
                 {app("com.a.app"), embedded("Widget", widgetExtension, "App", "com.a.app.w")}),
             kID, Severity::success, kValidTitle, ""},
            {"a widget elsewhere",
             builtProject(
                 {app("com.a.app"), embedded("Widget", widgetExtension, "App", "com.b.w")}),
             kID, Severity::error, "Invalid Widget Bundle Identifier",
             "• Widget (com.b.w) is not under App (com.a.app) (Debug, Release)"},
            {"a prefix without the dot",
             builtProject(
                 {app("com.a.app"), embedded("Widget", widgetExtension, "App", "com.a.appwidget")}),
             kID, Severity::error, "Invalid Widget Bundle Identifier", "Widget (com.a.appwidget)"},
            {"a watch app beside the app's id",
             builtProject({app("com.a.app"), embedded("Watch", watchApp, "App", "com.a.watch")}),
             kID, Severity::error, kNotPrefixed,
             "• Watch (com.a.watch) is not under App (com.a.app)"},
            {"a watch extension under the iOS app, not its watch app",
             builtProject({app("com.a.app"), embedded("Watch", watchApp, "App", "com.a.app.watch"),
                           embedded("Ext", watchExtension, "Watch", "com.a.app.ext")}),
             kID, Severity::error, kNotPrefixed, "• Ext (com.a.app.ext) is not under Watch"},
            {"an App Clip elsewhere",
             builtProject({app("com.a.app"), embedded("Clip", appClip, "App", "com.a.clip")}), kID,
             Severity::error, kNotPrefixed, "• Clip (com.a.clip) is not under App"},
            {"a framework keeps its own id",
             builtProject({app("com.a.app"), embedded("Kit", framework, "App", "com.vendor.kit")}),
             kID, Severity::success, kValidTitle, ""},
            {"an id that cannot be known", builtProject({app("com.a.app"), unknownWidget}), kID,
             Severity::success, kValidTitle, ""},
        });

    // The suggestion keeps the widget's own last component; a finding of one
    // configuration is fixed in that configuration only.
    const TargetContext widget = embedded("Widget", widgetExtension, "App", "com.a.appwidget");
    const auto release =
        check.run(builtProject({builtConfiguration("Debug", {app("com.a"), widget}),
                                builtConfiguration("Release", {app("com.a.app"), widget})}));
    ASSERT_TRUE(release->fix.has_value());
    ASSERT_EQ(release->fix->steps.size(), 1u);
    EXPECT_EQ(release->fix->steps[0].action,
              FixAction(SetBuildSetting{"Widget", "Release", "PRODUCT_BUNDLE_IDENTIFIER",
                                        "com.a.app.appwidget"}));
}

} // namespace
} // namespace kelvane
