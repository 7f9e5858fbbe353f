#include "checks/WidgetBundleIdentifierCheck.h"

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

} // namespace
} // namespace kelvane
