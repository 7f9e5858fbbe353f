#include "checks/SigningConsistencyCheck.h"

#include "BuiltProjects.h"
#include "CheckOutcomes.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

using test::Headline;
using test::project;
using test::Target;
using enum TargetType;

constexpr const char* kID = "signing.inconsistent";

const Headline kSingle{kID, Severity::success, "Single Target Project"};

DoctorIssue consistent(std::string team, std::string style, std::vector<TargetRef> affected) {
    return DoctorIssue{.id = kID,
                       .severity = Severity::success,
                       .title = "Code Signing Consistent",
                       .description = "All targets use consistent code signing settings.\n\n"
                                      "Development Team: " +
                                      team + "\nCode Sign Style: " + style,
                       .impact = "No signing-related build or distribution issues expected.",
                       .affectedTargets = std::move(affected)};
}

std::vector<EvidenceItem> settings(std::string target, std::string team, std::string style) {
    return {{BuildSettingSource{target, "Debug"}, "DEVELOPMENT_TEAM", team, std::nullopt},
            {BuildSettingSource{target, "Debug"}, "CODE_SIGN_STYLE", style, std::nullopt}};
}

std::vector<FixStep> alignTo(std::string target, std::string team, std::string style) {
    return {{"Set " + target + " DEVELOPMENT_TEAM to '" + team + "'",
             SetBuildSetting{target, "All Configurations", "DEVELOPMENT_TEAM", team}},
            {"Set " + target + " CODE_SIGN_STYLE to '" + style + "'",
             SetBuildSetting{target, "All Configurations", "CODE_SIGN_STYLE", style}}};
}

template <class T> std::vector<T> concat(std::vector<std::vector<T>> parts) {
    std::vector<T> all;
    for (auto& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

DoctorIssue inconsistent(std::string lines, std::vector<EvidenceItem> evidence,
                         std::vector<TargetRef> affected, std::vector<FixStep> steps) {
    return DoctorIssue{
        .id = kID,
        .severity = Severity::warning,
        .title = "Inconsistent Code Signing Settings",
        .description =
            "Code signing settings are inconsistent across targets in this project.\n\nDetected "
            "inconsistencies:\n" +
            lines +
            "\n\nConsistent signing settings are recommended for:\n• Smooth CI/CD integration\n• "
            "Avoiding provisioning profile conflicts\n• Predictable build behavior\n• Easier team "
            "collaboration\n\nThis is not always an error—some projects intentionally use "
            "different signing for different targets (e.g., app vs. extension). Review your "
            "project's signing requirements.",
        .impact = "Inconsistent signing settings can cause CI build failures, provisioning "
                  "profile conflicts, and installation issues when distributing the app.",
        .evidence = std::move(evidence),
        .affectedTargets = std::move(affected),
        .fix = DoctorFix{.summary = "Align Signing Settings",
                         .safety = FixSafety::manualOnly,
                         .steps = std::move(steps),
                         .warningMessage =
                             "Changing signing settings may affect your ability to build and "
                             "distribute the app. Ensure you have the correct certificates and "
                             "provisioning profiles."}};
}

TEST(SigningConsistencyCheck, Outcomes) {
    const FixStep manualReview{"Manually review signing settings in Xcode",
                               ManualInstruction{{"Open project.pbxproj in Xcode",
                                                  "Review DEVELOPMENT_TEAM across all targets",
                                                  "Review CODE_SIGN_STYLE across all targets",
                                                  "Align settings as needed for your project"}}};
    test::expectOutcomes(
        SigningConsistencyCheck{},
        {
            {"no-targets", project({}), kSingle},
            {"one-target", project({Target("App", application).team("ABC")}), kSingle},
            {"unset-team-does-not-disagree",
             project({Target("App", application).team("ABC").bundleID("com.x"),
                      Target("Ext", appExtension)}),
             consistent("ABC", "(not set)",
                        {{"App", application, "com.x"}, {"Ext", appExtension, std::nullopt}})},
            {"nothing-set", project({Target("App", application), Target("Ext", appExtension)}),
             consistent("(not set)", "(not set)",
                        {{"App", application, std::nullopt}, {"Ext", appExtension, std::nullopt}})},
            // Teams are listed sorted whichever target comes first; the first
            // target has both values, so every other target gets two steps,
            // also one that already matches.
            {"teams-differ",
             project({Target("App", application).team("XYZ").signStyle("Automatic"),
                      Target("Same", appExtension).team("XYZ").signStyle("Automatic"),
                      Target("Other", watchApp).team("ABC")}),
             inconsistent("Multiple development teams: ABC, XYZ",
                          concat<EvidenceItem>({settings("App", "XYZ", "Automatic"),
                                                settings("Same", "XYZ", "Automatic"),
                                                settings("Other", "ABC", "(not set)")}),
                          {{"App", application, std::nullopt},
                           {"Same", appExtension, std::nullopt},
                           {"Other", watchApp, std::nullopt}},
                          concat<FixStep>({alignTo("Same", "XYZ", "Automatic"),
                                           alignTo("Other", "XYZ", "Automatic")}))},
            // Values are compared as written: "abc" is another team than "ABC".
            {"teams-and-styles-differ-first-without-team",
             project({Target("App", application).signStyle("Manual"),
                      Target("Ext", appExtension).team("ABC").signStyle("Automatic"),
                      Target("Kit", framework).team("abc")}),
             inconsistent("Multiple development teams: ABC, abc\n"
                          "Multiple code sign styles: Automatic, Manual",
                          concat<EvidenceItem>({settings("App", "(not set)", "Manual"),
                                                settings("Ext", "ABC", "Automatic"),
                                                settings("Kit", "abc", "(not set)")}),
                          {{"App", application, std::nullopt},
                           {"Ext", appExtension, std::nullopt},
                           {"Kit", framework, std::nullopt}},
                          {manualReview})},
            {"styles-differ-team-shared",
             project({Target("App", application).team("ABC").signStyle("Automatic"),
                      Target("Ext", appExtension).team("ABC").signStyle("Manual")}),
             inconsistent("Multiple code sign styles: Automatic, Manual",
                          concat<EvidenceItem>({settings("App", "ABC", "Automatic"),
                                                settings("Ext", "ABC", "Manual")}),
                          {{"App", application, std::nullopt}, {"Ext", appExtension, std::nullopt}},
                          alignTo("Ext", "ABC", "Automatic"))},
        });
}

// As built, only targets signed together are compared, per configuration,
// and a difference found in several configurations is one line naming them.
TEST(SigningConsistencyAsBuilt, ComparesWhatIsSignedTogether) {
    using test::BuiltTarget;
    using test::builtConfiguration;
    using test::builtProject;
    const auto app = [](std::string team) {
        return BuiltTarget("App", application, Platform::iOS, TargetRole::app)
            .mainApp().embeds({"Widget"}).team(std::move(team)).signStyle("Automatic");
    };
    const auto widget = [](std::string team) {
        return BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded)
            .host("App").team(std::move(team)).signStyle("Automatic");
    };
    const TargetContext siblingOtherTeam =
        BuiltTarget("Enterprise", application, Platform::iOS, TargetRole::app).team("ENT");
    const TargetContext macOtherTeam =
        BuiltTarget("Mac", application, Platform::macOS, TargetRole::app).mainApp().team("MAC");
    const TargetContext hostedTestsOtherTeam =
        BuiltTarget("AppTests", unitTestBundle, Platform::iOS, TargetRole::testBundle)
            .host("App").team("TST");

    const auto headline = [](std::string_view description) {
        return [description](const std::optional<DoctorIssue>& issue) {
            ASSERT_TRUE(issue.has_value());
            EXPECT_NE(issue->description.find(description), std::string::npos) << issue->description;
        };
    };
    struct Case {
        const char* name;
        ProjectContext project;
        Severity severity;
        std::string line;
    };
    const std::vector<Case> cases{
        {"sibling apps, other platforms and one team per product are fine",
         builtProject({app("ABC"), widget("ABC"), siblingOtherTeam, macOtherTeam}),
         Severity::success, "signed by one team in one style"},
        {"a widget signed by another team in every configuration is one line",
         builtProject({app("ABC"), widget("XYZ")}), Severity::warning,
         "• App and the content it embeds are signed by different teams: App (ABC), Widget (XYZ) "
         "(Debug, Release)"},
        {"a difference only Release has names Release",
         builtProject({builtConfiguration("Debug", {app("ABC"), widget("ABC")}),
                       builtConfiguration("Release", {app("ABC"), widget("XYZ")})}),
         Severity::warning, "Widget (XYZ) (Release)"},
        {"a hosted test bundle is compared with its host only",
         builtProject({app("ABC"), widget("ABC"), hostedTestsOtherTeam}), Severity::warning,
         "• AppTests and its host App are signed by different teams: App (ABC), AppTests (TST)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::optional<DoctorIssue> issue = SigningConsistencyCheck().run(c.project);
        headline(c.line)(issue);
        EXPECT_EQ(issue->severity, c.severity);
    }
    // Evidence names where each value was set and every configuration.
    const auto issue = SigningConsistencyCheck().run(builtProject({app("ABC"), widget("XYZ")}));
    ASSERT_EQ(issue->evidence.size(), 2u);
    EXPECT_EQ(issue->evidence[1].source, EvidenceSource(BuildSettingSource{"Widget", "Debug, Release"}));
    ASSERT_TRUE(issue->evidence[1].origin.has_value());
    EXPECT_EQ(issue->evidence[1].origin->level, "target");
}

} // namespace
} // namespace kelvane
