#include "checks/AppGroupConsistencyCheck.h"

#include "BuiltProjects.h"
#include "CheckOutcomes.h"
#include "PlistFixtures.h"
#include "TempDir.h"
#include "plist/ParseError.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

using test::entry;
using test::Headline;
using test::project;
using test::Target;
using test::texts;
using test::withEntitlements;
using enum TargetType;

constexpr const char* kID = "app.group.consistency";
constexpr const char* kKey = "com.apple.security.application-groups";

const Headline kNoGroups{kID, Severity::success, "No App Groups"};
const Headline kConsistent{kID, Severity::success, "App Groups Consistent"};
const Headline kInconsistent{kID, Severity::warning, "App Group Inconsistency"};

EvidenceItem groups(std::string target, std::string value,
                    std::optional<std::string> expected = std::nullopt) {
    return {EntitlementsSource{std::move(target), "Entitlements"}, kKey, std::move(value),
            std::move(expected)};
}

DoctorIssue success(std::string title, std::string description, std::string impact,
                    std::vector<TargetRef> affected) {
    return {kID, Severity::success,   std::move(title), std::move(description), std::move(impact),
            {},  std::move(affected), std::nullopt};
}

DoctorIssue inconsistent(std::string lines, std::vector<EvidenceItem> evidence,
                         std::vector<TargetRef> affected) {
    return DoctorIssue{
        .id = kID,
        .severity = Severity::warning,
        .title = "App Group Inconsistency",
        .description =
            "App group entitlements are inconsistent across targets.\n\nIssues found:\n" + lines +
            "\n\nFor proper data sharing:\n• All related targets (app, extensions, "
            "widgets, watch) must declare the same app groups\n• App groups must be "
            "identical across all targets that need to share data\n• Group "
            "identifiers must match exactly (case-sensitive)",
        .impact = "Inconsistent app groups cause silent runtime failures, data not being shared "
                  "between app and extensions, and widgets showing empty states.",
        .evidence = std::move(evidence),
        .affectedTargets = std::move(affected),
        .fix = DoctorFix{
            .summary = "Align App Group Entitlements",
            .safety = FixSafety::manualOnly,
            .steps = {{"Review and align app group entitlements in all targets",
                       ManualInstruction{{"Open project in Xcode", "Select each target",
                                          "Go to Signing & Capabilities tab",
                                          "Ensure all targets that need to share data have the "
                                          "same app groups",
                                          "Verify group identifier format: "
                                          "group.<bundle-id-prefix>"}}}},
            .warningMessage = "Modifying app groups will affect data sharing between targets."}};
}

class AppGroupConsistencyCheckTest : public ::testing::Test {
protected:
    // A target whose entitlements file holds `entries` (XML inside the root dictionary).
    TargetContext declaring(const Target& target, const std::string& entries) {
        const TargetContext context = target;
        return withEntitlements(context,
                                dir.write(context.name + std::to_string(++files) + ".entitlements",
                                          test::plistDocument(entries)));
    }
    // A target whose app groups are `valueXml`.
    TargetContext grouped(const Target& target, const std::string& valueXml) {
        return declaring(target, entry(kKey, valueXml));
    }

    testing::TempDir dir;
    int files = 0;
    const AppGroupConsistencyCheck check{kKey};
};

TEST_F(AppGroupConsistencyCheckTest, Outcomes) {
    const Target app = Target("App", application).bundleID("com.example.app");
    const Target widget = Target("Widget", widgetExtension).bundleID("com.example.app.widget");
    const Target share = Target("Share", appExtension);
    const TargetRef appRef{"App", application, "com.example.app"};
    const TargetRef widgetRef{"Widget", widgetExtension, "com.example.app.widget"};
    const TargetRef shareRef{"Share", appExtension, std::nullopt};

    test::expectOutcomes(
        check,
        {
            {"no-entitlements-anywhere", project({app, widget}), kNoGroups},
            {"entitlements-without-groups",
             project({declaring(app, entry("aps-environment", test::text("development"))),
                      declaring(widget, "")}),
             kNoGroups},
            // Values of another type are not read as groups at all.
            {"groups-of-unexpected-types",
             project({grouped(app, "<integer>1</integer>"),
                      grouped(widget, "<array><string>group.a</string><true/></array>")}),
             kNoGroups},
            {"entitlements-file-gone",
             project({withEntitlements(app, dir.file("Gone.entitlements")),
                      withEntitlements(widget, dir.file("Gone.entitlements"))}),
             kNoGroups},
            {"single-target", project({grouped(app, texts({"group.a"})), widget}),
             success("Single Target with App Groups",
                     "Only one target uses app groups, so consistency checks are not applicable.",
                     "No inter-target app group sharing issues can occur.", {appRef})},
            {"app-and-widget-share-group",
             project({grouped(widget, texts({"group.a"})), grouped(app, texts({"group.a"}))}),
             success("App Groups Consistent",
                     "All targets that use app groups have consistent configuration.",
                     "Data sharing between app and extensions will work correctly.",
                     {appRef, widgetRef})},
            {"text-and-one-element-array-agree",
             project({grouped(app, test::text("group.a")), grouped(widget, texts({"group.a"}))}),
             kConsistent},
            {"duplicates-do-not-count",
             project({grouped(app, texts({"group.b", "group.a", "group.a"})),
                      grouped(widget, texts({"group.a", "group.b"}))}),
             kConsistent},
            // Only the main app's name is compared: a framework sharing it
            // is taken for the app and never compared against it.
            {"namesake-of-main-app-is-skipped",
             project({grouped(app, texts({"group.a"})),
                      grouped(Target("App", framework), texts({"group.z"})),
                      grouped(widget, texts({"group.a"}))}),
             kConsistent},
            {"groups-differ-only-in-case",
             project({grouped(app, texts({"group.A"})), grouped(widget, texts({"group.a"}))}),
             kInconsistent},
            // Groups are compared as sets, listed ascending in each line, the
            // extra line before the missing one; evidence shows each target's
            // sorted list against the app's, the app's own first.
            {"groups-differ-extra-and-missing",
             project({grouped(share, texts({"group.z", "group.y"})),
                      grouped(app, texts({"group.b", "group.a"})),
                      grouped(widget, texts({"group.c", "group.a", "group.c"}))}),
             inconsistent("Share declares groups not in main app: group.y, group.z\n"
                          "Share missing app groups: group.a, group.b\n"
                          "Widget declares groups not in main app: group.c\n"
                          "Widget missing app groups: group.b",
                          {groups("App", "group.a, group.b"),
                           groups("Share", "group.y, group.z", "group.a, group.b"),
                           groups("Widget", "group.a, group.c, group.c", "group.a, group.b")},
                          {appRef, shareRef, widgetRef})},
            {"widget-with-empty-array",
             project({grouped(app, texts({"group.a"})), grouped(widget, "<array/>")}),
             inconsistent("Widget missing app groups: group.a",
                          {groups("App", "group.a"), groups("Widget", "", "group.a")},
                          {appRef, widgetRef})},
            {"extensions-only",
             project({app, grouped(widget, texts({"group.a"})),
                      grouped(share, texts({"group.b", "group.a"}))}),
             inconsistent("Main app does not declare app groups, but extensions do: Widget, Share",
                          {groups("Widget", "group.a"), groups("Share", "group.a, group.b")},
                          {widgetRef, shareRef})},
            {"no-main-app",
             project({grouped(widget, texts({"group.a"})), grouped(share, texts({"group.a"}))}),
             kInconsistent},
        });
}

TEST_F(AppGroupConsistencyCheckTest, TruncatedEntitlementsFailTheCheck) {
    const TargetContext app = grouped(Target("App", application), texts({"group.a"}));
    const std::string truncated = test::truncatedDocument(entry(kKey, texts({"group.a"})));
    const ProjectContext broken =
        project({app, withEntitlements(Target("Widget", widgetExtension),
                                       dir.write("Truncated.entitlements", truncated))});
    EXPECT_THROW((void)check.run(broken), plist::ParseError);
}

TEST(AppGroupConsistencyAsBuilt, ExtensionsShareAGroupWithTheirHost) {
    using test::BuiltTarget;
    using test::builtProject;
    // The groups as the build writes them, `$(…)` already expanded.
    const auto groups = [](std::vector<std::string> names) {
        plist::Array items(names.begin(), names.end());
        return plist::Dictionary({{kKey, plist::Value(std::move(items))}});
    };
    const auto app = [&](std::vector<std::string> names) {
        BuiltTarget target = BuiltTarget("App", application, Platform::iOS, TargetRole::app)
                                 .mainApp().embeds({"Widget", "Watch"});
        return names.empty() ? target : target.entitlements(groups(std::move(names)));
    };
    const auto widget = [&](std::vector<std::string> names) {
        BuiltTarget target =
            BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded).host("App");
        return names.empty() ? target : target.entitlements(groups(std::move(names)));
    };
    const TargetContext watchOwnGroup =
        BuiltTarget("Watch", watchApp, Platform::watchOS, TargetRole::embedded)
            .host("App").entitlements(groups({"group.watch"}));
    const TargetContext watchStub =
        BuiltTarget("Watch", watchApp, Platform::watchOS, TargetRole::embedded).host("App");
    const TargetContext watchKitExtension =
        BuiltTarget("Watch Extension", watchExtension, Platform::watchOS, TargetRole::embedded)
            .host("Watch").entitlements(groups({"group.watch"}));

    struct Case {
        const char* name;
        ProjectContext project;
        Severity severity;
        std::string line;
    };
    const std::vector<Case> cases{
        {"a subset of the app's groups is shared data",
         builtProject({app({"group.a", "group.b"}), widget({"group.b"})}), Severity::success,
         "shares at least one of them"},
        {"an extension without groups is normal", builtProject({app({"group.a"}), widget({})}),
         Severity::success, "shares at least one of them"},
        {"expanded names that come out equal are one group",
         builtProject({app({"group.com.a.app"}), widget({"group.com.a.app"})}), Severity::success,
         "shares at least one of them"},
        {"a watch app shares no container with the phone", builtProject({app({"group.a"}), watchOwnGroup}),
         Severity::success, "shares at least one of them"},
        {"a WatchKit extension is its watch app's code",
         builtProject({app({}), watchStub, watchKitExtension}), Severity::success,
         "shares at least one of them"},
        {"disjoint groups share nothing",
         builtProject({app({"group.a"}), widget({"group.b", "group.c"})}), Severity::warning,
         "• Widget shares no app group with its host App: group.b, group.c against group.a "
         "(Debug, Release)"},
        {"groups on the extension only", builtProject({app({}), widget({"group.b"})}),
         Severity::warning,
         "• Widget declares app groups, but its host App declares none: group.b (Debug, Release)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::optional<DoctorIssue> issue = AppGroupConsistencyCheck{kKey}.run(c.project);
        ASSERT_TRUE(issue.has_value());
        EXPECT_EQ(issue->severity, c.severity);
        EXPECT_NE(issue->description.find(c.line), std::string::npos) << issue->description;
    }
    // A host whose entitlements file depends on what the repository lacks is
    // not taken for a host without groups.
    const TargetContext unknownHost =
        BuiltTarget("App", application, Platform::iOS, TargetRole::app)
            .mainApp().unknown("CODE_SIGN_ENTITLEMENTS", "Secrets.xcconfig is missing");
    EXPECT_EQ(AppGroupConsistencyCheck{kKey}.run(builtProject({unknownHost, widget({"group.b"})}))->severity,
              Severity::success);
}

} // namespace
} // namespace kelvane
