#include "checks/DeploymentTargetMismatchCheck.h"

#include "BuiltProjects.h"
#include "CheckOutcomes.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

using test::Headline;
using test::project;
using test::Target;
using enum TargetType;

constexpr const char* kID = "deployment.target.mismatch";

TEST(DeploymentTargetMismatchCheck, IsLowerVersion) {
    struct Case {
        const char* a;
        const char* b;
        bool lower;
    };
    const Case cases[] = {
        {"16.0", "17.0", true},
        {"17.0", "16.0", false},
        {"17.0", "17.0", false},
        {"9.0", "17.0", true}, // numeric, not textual
        {"16.4", "16.10", true},
        // A shorter list that agrees so far is lower, never the longer one.
        {"16", "16.0", true},
        {"16.0", "16", false},
        // Empty pieces and pieces that are no number are dropped.
        {"17..0", "17.0", false},
        {".17.", "17", false},
        {"17.0 beta", "17", false},
        {"17.0 beta", "17.0", true},
        {"$(VERSION)", "1", true},
        {"", "", false},
        {"+5", "5", false},
        {"-1", "0", true},
        {"+-1", "0", true},                  // "+-1" is no number: empty list
        {"99999999999999999999", "1", true}, // overflow is no number
        {"9223372036854775807", "1", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DeploymentTargetMismatchCheck::isLowerVersion(c.a, c.b), c.lower)
            << "'" << c.a << "' < '" << c.b << "'";
    }
}

EvidenceItem debugEvidence(std::string target, std::string value,
                           std::optional<std::string> expected = std::nullopt) {
    return {BuildSettingSource{std::move(target), "Debug"}, "DEPLOYMENT_TARGET", std::move(value),
            std::move(expected)};
}

FixStep alignStep(std::string target, std::string value) {
    return {"Set " + target + " deployment target to " + value,
            SetBuildSetting{target, "All Configurations", "IPHONEOS_DEPLOYMENT_TARGET", value}};
}

DoctorIssue mismatch(std::string lines, std::vector<EvidenceItem> evidence,
                     std::vector<TargetRef> affected, std::vector<FixStep> steps) {
    return DoctorIssue{
        .id = kID,
        .severity = Severity::warning,
        .title = "Deployment Target Mismatch",
        .description =
            "Deployment target mismatches detected between app and extensions.\n\nIssues "
            "found:\n" +
            lines +
            "\n\nExtension targets should have deployment targets equal to or higher than the "
            "main app.\n\nCommon problems:\n• Extension has iOS 16, app has iOS 17 → extension "
            "won't appear on iOS 17+ devices\n• Watch app has watchOS 9, iOS app has iOS 16 → "
            "compatibility issues\n• Widget has lower deployment target → widget may crash on "
            "newer OS versions",
        .impact = "Mismatched deployment targets can cause runtime crashes, extensions not "
                  "appearing, and widgets showing empty states on certain OS versions.",
        .evidence = std::move(evidence),
        .affectedTargets = std::move(affected),
        .fix = DoctorFix{.summary = "Align Deployment Targets",
                         .safety = FixSafety::requiresConfirmation,
                         .steps = std::move(steps),
                         .warningMessage = "Changing deployment targets may affect API "
                                           "availability and device compatibility."}};
}

DoctorIssue success(std::string title, std::string description, std::string impact,
                    std::vector<TargetRef> affected) {
    return DoctorIssue{.id = kID,
                       .severity = Severity::success,
                       .title = std::move(title),
                       .description = std::move(description),
                       .impact = std::move(impact),
                       .affectedTargets = std::move(affected)};
}

TEST(DeploymentTargetMismatchCheck, Outcomes) {
    test::expectOutcomes(
        DeploymentTargetMismatchCheck{},
        {
            {"no-deployment-targets", project({Target("App", application)}),
             success("No Deployment Targets Configured",
                     "No deployment targets were found in the project configuration.",
                     "Deployment target validation is not applicable.", {})},
            {"single-configured-target",
             project(
                 {Target("App", application), Target("Ext", appExtension).bundleID("com.x.e"),
                  Target("Widget", widgetExtension).deploymentTarget("16.0").bundleID("com.w")}),
             success("Single Target Project",
                     "This project has only one target with deployment configuration.",
                     "Deployment target consistency checks are not applicable.",
                     {{"Widget", widgetExtension, "com.w"}})},
            {"widget-lower-watch-higher",
             project({Target("App", application).deploymentTarget("17.0").bundleID("com.x"),
                      Target("Widget", widgetExtension).deploymentTarget("16.0"),
                      Target("Same", appExtension).deploymentTarget("17.0"),
                      Target("Watch", watchApp).deploymentTarget("18.0").bundleID("com.x.w")}),
             mismatch("Widget (16.0) has lower deployment target than app (17.0)",
                      {debugEvidence("App", "17.0"), debugEvidence("Widget", "16.0", "17.0"),
                       debugEvidence("Watch", "18.0", "17.0")},
                      {{"App", application, "com.x"},
                       {"Widget", widgetExtension, std::nullopt},
                       {"Watch", watchApp, "com.x.w"}},
                      {alignStep("Widget", "17.0"), alignStep("Watch", "17.0")})},
            // Evidence is dropped when nothing is lower; the targets stay.
            {"extension-higher-than-app",
             project({Target("App", application).deploymentTarget("17.0"),
                      Target("Ext", appExtension).deploymentTarget("18.0")}),
             success("Deployment Targets Consistent",
                     "All targets have compatible deployment target configurations.",
                     "No deployment-related runtime issues expected.",
                     {{"App", application, std::nullopt}, {"Ext", appExtension, std::nullopt}})},
            {"extension-16-below-app-16.0",
             project({Target("App", application).deploymentTarget("16.0"),
                      Target("Ext", appExtension).deploymentTarget("16")}),
             mismatch("Ext (16) has lower deployment target than app (16.0)",
                      {debugEvidence("App", "16.0"), debugEvidence("Ext", "16", "16.0")},
                      {{"App", application, std::nullopt}, {"Ext", appExtension, std::nullopt}},
                      {alignStep("Ext", "16.0")})},
            {"extension-16.0-not-below-app-16",
             project({Target("App", application).deploymentTarget("16"),
                      Target("Ext", appExtension).deploymentTarget("16.0")}),
             success("Deployment Targets Consistent",
                     "All targets have compatible deployment target configurations.",
                     "No deployment-related runtime issues expected.",
                     {{"App", application, std::nullopt}, {"Ext", appExtension, std::nullopt}})},
            // Only the first application is the app; a second one is compared
            // like any target, and a target named like the app is skipped.
            {"second-application-compared",
             project({Target("Ext", appExtension).deploymentTarget("15.0"),
                      Target("App", application).deploymentTarget("17.0"),
                      Target("App", framework).deploymentTarget("12.0"),
                      Target("Mac", application).deploymentTarget("14.0")}),
             mismatch("Ext (15.0) has lower deployment target than app (17.0)\n"
                      "Mac (14.0) has lower deployment target than app (17.0)",
                      {debugEvidence("App", "17.0"), debugEvidence("Ext", "15.0", "17.0"),
                       debugEvidence("Mac", "14.0", "17.0")},
                      {{"App", application, std::nullopt},
                       {"Ext", appExtension, std::nullopt},
                       {"Mac", application, std::nullopt}},
                      {alignStep("Ext", "17.0"), alignStep("Mac", "17.0")})},
            {"no-app-same-target",
             project({Target("Kit", framework).deploymentTarget("15.0"),
                      Target("Ext", appExtension).deploymentTarget("15.0")}),
             success("Deployment Targets Consistent",
                     "All targets use the same deployment target: 15.0",
                     "No deployment-related issues expected.",
                     {{"Kit", framework, std::nullopt}, {"Ext", appExtension, std::nullopt}})},
            // Listed in code-point order: "15.0" before "9.0".
            {"app-without-deployment-target-different-targets",
             project({Target("App", application), Target("A", appExtension).deploymentTarget("9.0"),
                      Target("B", watchApp).deploymentTarget("15.0"),
                      Target("C", framework).deploymentTarget("9.0")}),
             DoctorIssue{.id = kID,
                         .severity = Severity::warning,
                         .title = "Multiple Deployment Targets",
                         .description = "Targets use different deployment targets: 15.0, 9.0\n\n"
                                        "This may be intentional, but ensure compatibility "
                                        "between targets.",
                         .impact = "Different deployment targets may cause compatibility issues.",
                         .affectedTargets = {{"A", appExtension, std::nullopt},
                                             {"B", watchApp, std::nullopt},
                                             {"C", framework, std::nullopt}}}},
        });
}

TEST(DeploymentTargetMismatchAsBuilt, ContentNeedingANewerOSThanItsHost) {
    using test::BuiltTarget;
    using test::builtProject;
    const auto app = [](std::string version) {
        return BuiltTarget("App", application, Platform::iOS, TargetRole::app)
            .mainApp().embeds({"Widget", "Watch"}).deploymentTarget(std::move(version));
    };
    const auto widget = [](std::string version) {
        return BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded)
            .host("App").deploymentTarget(std::move(version));
    };
    const TargetContext watch = BuiltTarget("Watch", watchApp, Platform::watchOS, TargetRole::embedded)
                                    .host("App").deploymentTarget("10.0");
    const TargetContext unknownWidget =
        BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded)
            .host("App").unknown("IPHONEOS_DEPLOYMENT_TARGET", "Shared.xcconfig is missing");

    struct Case {
        const char* name;
        ProjectContext project;
        Severity severity;
        std::string line;
    };
    const std::vector<Case> cases{
        {"a lower widget is harmless", builtProject({app("17.4"), widget("16")}), Severity::success,
         "No extension, widget or other embedded content needs a newer OS"},
        {"equal by number, written differently", builtProject({app("17"), widget("17.0")}),
         Severity::success, "needs a newer OS"},
        {"a watch app is not measured against iOS", builtProject({app("17.0"), watch}),
         Severity::success, "needs a newer OS"},
        {"an unknown version is not compared", builtProject({app("16.0"), unknownWidget}),
         Severity::success, "needs a newer OS"},
        {"a higher widget is named with both versions", builtProject({app("17.0"), widget("17.4")}),
         Severity::warning,
         "• Widget needs iOS 17.4, but its host App runs on iOS 17.0 (Debug, Release)"},
        {"components compare as numbers", builtProject({app("9.3"), widget("16")}),
         Severity::warning, "Widget needs iOS 16, but its host App runs on iOS 9.3"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::optional<DoctorIssue> issue = DeploymentTargetMismatchCheck{}.run(c.project);
        ASSERT_TRUE(issue.has_value());
        EXPECT_EQ(issue->severity, c.severity);
        EXPECT_NE(issue->description.find(c.line), std::string::npos) << issue->description;
    }
    // The fix lowers the widget's own platform setting to the app's version.
    const auto issue = DeploymentTargetMismatchCheck{}.run(builtProject({app("16.0"), widget("17.0")}));
    ASSERT_EQ(issue->fix->steps.size(), 1u);
    EXPECT_EQ(issue->fix->steps[0].action,
              FixAction(SetBuildSetting{"Widget", "All Configurations", "IPHONEOS_DEPLOYMENT_TARGET",
                                        "16.0"}));
}

} // namespace
} // namespace kelvane
