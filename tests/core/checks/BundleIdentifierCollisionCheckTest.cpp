#include "checks/BundleIdentifierCollisionCheck.h"

#include "BuiltProjects.h"
#include "CheckOutcomes.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

using test::Headline;
using test::project;
using test::Target;
using enum TargetType;

constexpr const char* kID = "bundle.identifier.collision";

const Headline kUnique{kID, Severity::success, "No Bundle ID Collisions"};
const Headline kCollision{kID, Severity::error, "Bundle Identifier Collision"};

EvidenceItem debugEvidence(std::string target, std::string identifier) {
    return {BuildSettingSource{std::move(target), "Debug"}, "PRODUCT_BUNDLE_IDENTIFIER",
            std::move(identifier), std::nullopt};
}

FixStep renameStep(std::string target, std::string suggestion) {
    return {"Change " + target + " bundle ID to " + suggestion,
            SetBuildSetting{target, "All Configurations", "PRODUCT_BUNDLE_IDENTIFIER", suggestion}};
}

DoctorIssue collision(std::string lines, std::vector<EvidenceItem> evidence,
                      std::vector<TargetRef> affected, std::vector<FixStep> steps) {
    return DoctorIssue{
        .id = kID,
        .severity = Severity::error,
        .title = "Bundle Identifier Collision",
        .description = "Multiple targets are configured with the same bundle identifier.\n\n"
                       "Collisions detected:\n" +
                       lines +
                       "\n\nEach target must have a unique bundle identifier. Duplicate bundle "
                       "IDs cause:\n• Installation failures on device\n• App replacement (one "
                       "target overwrites another)\n• CI/CD build confusion\n• Archive and "
                       "distribution problems",
        .impact = "Targets with duplicate bundle identifiers will cause installation failures, "
                  "app replacement on devices, and CI build failures.",
        .evidence = std::move(evidence),
        .affectedTargets = std::move(affected),
        .fix = DoctorFix{.summary = "Resolve Bundle ID Collisions",
                         .safety = FixSafety::requiresConfirmation,
                         .steps = std::move(steps),
                         .warningMessage = "Changing bundle identifiers will affect app "
                                           "installation and data persistence."}};
}

TEST(BundleIdentifierCollisionCheck, Outcomes) {
    test::expectOutcomes(
        BundleIdentifierCollisionCheck{},
        {
            {"no-targets", project({}), kUnique},
            {"no-target-has-an-id",
             project({Target("App", application), Target("Widget", widgetExtension)}), kUnique},
            {"ids-differ-only-in-case",
             project({Target("A", application).bundleID("com.Example.app"),
                      Target("B", appExtension).bundleID("com.example.app")}),
             kUnique},
            {"ids-differ-by-a-build-setting-reference",
             project({Target("A", application).bundleID("$(PRODUCT_BUNDLE_IDENTIFIER)"),
                      Target("B", appExtension).bundleID("com.example.app")}),
             kUnique},
            {"empty-id-shared",
             project(
                 {Target("A", application).bundleID(""), Target("B", appExtension).bundleID("")}),
             kCollision},
            {"three-targets-share-one-id",
             project({Target("App", application).bundleID("com.example.app"),
                      Target("Tests", unitTestBundle),
                      Target("App Widget", widgetExtension).bundleID("com.example.app"),
                      Target("Clip", appClip).bundleID("com.example.app")}),
             collision("Bundle ID 'com.example.app' used by: App, App Widget, Clip",
                       {debugEvidence("App", "com.example.app"),
                        debugEvidence("App Widget", "com.example.app"),
                        debugEvidence("Clip", "com.example.app")},
                       {{"App", application, "com.example.app"},
                        {"App Widget", widgetExtension, "com.example.app"},
                        {"Clip", appClip, "com.example.app"}},
                       {renameStep("App Widget", "com.example.app.app-widget"),
                        renameStep("Clip", "com.example.app.clip")})},
            // Collisions come in code-point order of their ids ("com.Z" before
            // "com.a"), whatever the order of their targets in the project.
            {"two-collisions-sorted-by-id",
             project({Target("b1", application).bundleID("com.a"),
                      Target("Z1", framework).bundleID("com.Z"),
                      Target("b2", appExtension).bundleID("com.a"),
                      Target("Z2", framework).bundleID("com.Z")}),
             collision("Bundle ID 'com.Z' used by: Z1, Z2\nBundle ID 'com.a' used by: b1, b2",
                       {debugEvidence("Z1", "com.Z"), debugEvidence("Z2", "com.Z"),
                        debugEvidence("b1", "com.a"), debugEvidence("b2", "com.a")},
                       {{"Z1", framework, "com.Z"},
                        {"Z2", framework, "com.Z"},
                        {"b1", application, "com.a"},
                        {"b2", appExtension, "com.a"}},
                       {renameStep("Z2", "com.Z.z2"), renameStep("b2", "com.a.b2")})},
            // Only U+0020 becomes "-"; the tab stays. Lowercasing is Unicode's
            // full mapping without the final-sigma rule, and İ grows a dot.
            {"suggestions-lowercase-names",
             project({Target("App", application).bundleID("com.x"),
                      Target("My App\tPro", appExtension).bundleID("com.x"),
                      Target("ΟΔΟΣ Widget", widgetExtension).bundleID("com.x"),
                      Target("İpek", watchApp).bundleID("com.x")}),
             collision("Bundle ID 'com.x' used by: App, My App\tPro, ΟΔΟΣ Widget, İpek",
                       {debugEvidence("App", "com.x"), debugEvidence("My App\tPro", "com.x"),
                        debugEvidence("ΟΔΟΣ Widget", "com.x"), debugEvidence("İpek", "com.x")},
                       {{"App", application, "com.x"},
                        {"My App\tPro", appExtension, "com.x"},
                        {"ΟΔΟΣ Widget", widgetExtension, "com.x"},
                        {"İpek", watchApp, "com.x"}},
                       {renameStep("My App\tPro", "com.x.my-app\tpro"),
                        renameStep("ΟΔΟΣ Widget", "com.x.οδοσ-widget"),
                        renameStep("İpek", "com.x.i\u0307pek")})},
            // The first target is never given a step, even when the second
            // shares its name and so gets the suggestion the first would get.
            {"same-name-and-id",
             project({Target("App", application).bundleID("com.x"),
                      Target("App", appExtension).bundleID("com.x")}),
             collision("Bundle ID 'com.x' used by: App, App",
                       {debugEvidence("App", "com.x"), debugEvidence("App", "com.x")},
                       {{"App", application, "com.x"}, {"App", appExtension, "com.x"}},
                       {renameStep("App", "com.x.app")})},
        });
}

TEST(BundleIdentifierCollisionAsBuilt, ComparesBundlesThatInstallTogether) {
    using test::BuiltTarget;
    using test::builtConfiguration;
    using test::builtProject;
    const auto app = [](std::string id) {
        return BuiltTarget("App", application, Platform::iOS, TargetRole::app)
            .mainApp().embeds({"Widget", "Kit", "Watch"}).bundleID(std::move(id));
    };
    const auto widget = [](std::string id) {
        return BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded)
            .host("App").bundleID(std::move(id));
    };
    const auto tests = [](std::string name, std::string id) {
        return BuiltTarget(std::move(name), unitTestBundle, Platform::iOS, TargetRole::testBundle)
            .host("App").bundleID(std::move(id));
    };
    const TargetContext ownWidget = widget("com.a.app.widget");
    const TargetContext variant =
        BuiltTarget("App Enterprise", application, Platform::iOS, TargetRole::app).bundleID("com.a.app");
    const TargetContext macApp =
        BuiltTarget("Mac", application, Platform::macOS, TargetRole::app).mainApp().bundleID("com.a.app");
    const TargetContext watch = BuiltTarget("Watch", watchApp, Platform::watchOS, TargetRole::embedded)
                                       .host("App").bundleID("com.a.app");
    const TargetContext kit =
        BuiltTarget("Kit", framework, Platform::iOS, TargetRole::embedded).host("App").bundleID("com.a.app");
    const TargetContext unknownWidget = BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded)
                                            .host("App").unknown("PRODUCT_BUNDLE_IDENTIFIER", "Secrets.xcconfig is missing");

    struct Case {
        const char* name;
        ProjectContext project;
        Severity severity;
        std::string line;
    };
    const std::vector<Case> cases{
        {"one id on iOS and macOS apps, and on a watch app inside, is no collision",
         builtProject({app("com.a.app"), ownWidget, macApp, watch}), Severity::success,
         "No app shares its bundle identifier"},
        {"a build variant may ship under the app's id",
         builtProject({app("com.a.app"), ownWidget, variant}), Severity::success,
         "No app shares its bundle identifier"},
        {"a framework inside the app is no installed bundle",
         builtProject({app("com.a.app"), ownWidget, kit}), Severity::success,
         "No app shares its bundle identifier"},
        {"an id that cannot be known is not compared",
         builtProject({app("com.a.app"), unknownWidget}), Severity::success,
         "No app shares its bundle identifier"},
        {"a widget with its app's id collides, a variant sharing it does not",
         builtProject({app("com.a.app"), widget("com.a.app"), variant}), Severity::error,
         "• Bundle ID 'com.a.app' used by: App, Widget (Debug, Release)"},
        {"two test bundles collide",
         builtProject({app("com.a.app"), ownWidget, tests("UnitTests", "com.a.tests"),
                       tests("UITests", "com.a.tests")}),
         Severity::error, "• Bundle ID 'com.a.tests' used by: UnitTests, UITests (Debug, Release)"},
        {"a test bundle collides with any bundle of its platform",
         builtProject({app("com.a.app"), ownWidget, variant, tests("AppTests", "com.a.app")}),
         Severity::error, "• Bundle ID 'com.a.app' used by: App, App Enterprise, AppTests"},
        {"a collision only Release has names Release",
         builtProject({builtConfiguration("Debug", {app("com.a.app"), ownWidget}),
                       builtConfiguration("Release", {app("com.a.app"), widget("com.a.app")})}),
         Severity::error, "used by: App, Widget (Release)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::optional<DoctorIssue> issue = BundleIdentifierCollisionCheck{}.run(c.project);
        ASSERT_TRUE(issue.has_value());
        EXPECT_EQ(issue->severity, c.severity);
        EXPECT_NE(issue->description.find(c.line), std::string::npos) << issue->description;
    }
    // The app keeps its id; what it embeds gets a new one.
    const auto issue =
        BundleIdentifierCollisionCheck{}.run(builtProject({app("com.a.app"), widget("com.a.app")}));
    EXPECT_EQ(issue->fix->steps,
              std::vector<FixStep>{renameStep("Widget", "com.a.app.widget")});
    ASSERT_EQ(issue->evidence.size(), 2u);
    EXPECT_EQ(issue->evidence[1].source,
              EvidenceSource(BuildSettingSource{"Widget", "Debug, Release"}));
}

} // namespace
} // namespace kelvane
