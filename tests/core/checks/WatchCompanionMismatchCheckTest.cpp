#include "checks/WatchCompanionMismatchCheck.h"

#include "BuiltOutcomes.h"
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
using test::text;
using test::withInfoPlist;
using enum TargetType;

constexpr const char* kID = "watch.companion.mismatch";
constexpr const char* kKey = "WKCompanionAppBundleIdentifier";

const Headline kValid{kID, Severity::success, "Watch Companion Configuration Valid"};

DoctorIssue issue(std::string id, Severity severity, std::string title, std::string description,
                  std::string impact) {
    return DoctorIssue{.id = std::move(id),
                       .severity = severity,
                       .title = std::move(title),
                       .description = std::move(description),
                       .impact = std::move(impact)};
}

DoctorFix companionFix(std::string summary, FixSafety safety, std::string step, std::string file) {
    return DoctorFix{.summary = std::move(summary),
                     .safety = safety,
                     .steps = {{std::move(step),
                                UpdatePlistKey{"Watch", std::move(file), kKey, "com.example.app"}}},
                     .warningMessage = std::nullopt};
}

class WatchCompanionMismatchCheckTest : public ::testing::Test {
protected:
    // A Watch app whose Info.plist, named `file`, holds `entries`.
    TargetContext watchWith(const std::string& file, const std::string& entries) {
        return withInfoPlist(
            watch, dir.write(std::to_string(++folders) + "/" + file, test::plistDocument(entries)));
    }

    testing::TempDir dir;
    int folders = 0;
    const WatchCompanionMismatchCheck check{kID};
    const Target watch = Target("Watch", watchApp).bundleID("com.example.app.watchkitapp");
    const Target app = Target("App", application).bundleID("com.example.app");
    const TargetRef watchRef{"Watch", watchApp, "com.example.app.watchkitapp"};
    const TargetRef appRef{"App", application, "com.example.app"};
};

TEST_F(WatchCompanionMismatchCheckTest, Outcomes) {
    const EvidenceItem appIDEvidence{BuildSettingSource{"App", "Debug"},
                                     "PRODUCT_BUNDLE_IDENTIFIER", "com.example.app", std::nullopt};
    DoctorIssue valid =
        issue(kID, Severity::success, "Watch Companion Configuration Valid",
              "The WatchKit app's companion bundle identifier correctly matches the iOS app.",
              "No impact - configuration is correct.");
    valid.evidence = {
        {PlistSource{"Watch", "Watch-Info.plist"}, kKey, "com.example.app", std::nullopt},
        appIDEvidence};
    valid.affectedTargets = {watchRef, appRef};

    DoctorIssue mismatch = issue(kID, Severity::error, "Watch Companion App ID Mismatch",
                                 "The WatchKit app's WKCompanionAppBundleIdentifier "
                                 "(com.example.App) does not match the iOS app's bundle "
                                 "identifier (com.example.app).",
                                 "Watch app will fail to install or launch. The iOS app and "
                                 "Watch extension cannot communicate.");
    mismatch.evidence = {
        {PlistSource{"Watch", "Info.plist"}, kKey, "com.example.App", "com.example.app"},
        appIDEvidence};
    mismatch.affectedTargets = {watchRef, appRef};
    // Correcting a value the developer wrote may be applied without asking.
    mismatch.fix =
        companionFix("Update WKCompanionAppBundleIdentifier to match iOS app", FixSafety::safeAuto,
                     "Set WKCompanionAppBundleIdentifier to 'com.example.app'", "Info.plist");

    DoctorIssue noAppID = issue(kID, Severity::warning, "Cannot Determine iOS Bundle ID",
                                "The iOS app target does not have a bundle identifier configured.",
                                "Unable to validate Watch companion bundle ID configuration.");
    noAppID.affectedTargets = {{"App", application, std::nullopt}};

    test::expectOutcomes(
        check,
        {
            // Only watchApp targets count, not their extensions.
            {"no-watch-app", project({app, Target("Ext", watchExtension)}),
             Headline{kID, Severity::success, "No Watch App"}},
            // The Info.plist is never opened: it does not even exist.
            {"no-ios-app",
             project({withInfoPlist(watch, dir.file("Missing.plist")), Target("C", appClip)}),
             Headline{kID, Severity::success, "No iOS App"}},
            {"companion-equals-app-id",
             project({watchWith("Watch-Info.plist", entry(kKey, text("com.example.app"))), app}),
             valid},
            {"companion-differs-in-case",
             project({app, watchWith("Info.plist", entry(kKey, text("com.example.App")))}),
             mismatch},
            {"second-watch-app-ignored",
             project({app, watchWith("Info.plist", entry(kKey, text("com.example.app"))),
                      withInfoPlist(Target("Watch 2", watchApp), dir.file("Missing.plist"))}),
             kValid},
            {"app-without-bundle-id",
             project({watchWith("Info.plist", entry(kKey, text("com.example.app"))),
                      Target("App", application)}),
             noAppID},
        });
}

// The missing key is reported under its own id, so these cases are compared
// here rather than through the table helper, which expects the check's id.
TEST_F(WatchCompanionMismatchCheckTest, MissingCompanionOutcomes) {
    const DoctorIssue base =
        issue("watch.companion.missing", Severity::error, "Watch Companion App ID Missing",
              "The WatchKit app's Info.plist is missing the required "
              "WKCompanionAppBundleIdentifier key.",
              "Watch app will fail to build or install.");
    const auto withFix = [&](std::string file) {
        DoctorIssue expected = base;
        expected.affectedTargets = {watchRef};
        // Adding a key the developer never wrote asks for confirmation.
        expected.fix = companionFix("Add WKCompanionAppBundleIdentifier to Watch app Info.plist",
                                    FixSafety::requiresConfirmation,
                                    "Add WKCompanionAppBundleIdentifier with value "
                                    "'com.example.app'",
                                    std::move(file));
        return expected;
    };
    DoctorIssue withoutFix = base;
    withoutFix.affectedTargets = {watchRef};

    const struct {
        const char* name;
        ProjectContext project;
        DoctorIssue expected;
    } cases[] = {
        {"key-absent", project({app, watchWith("Watch-Info.plist", entry("Other", text("x")))}),
         withFix("Watch-Info.plist")},
        {"key-is-a-number",
         project({app, watchWith("Info.plist", entry(kKey, "<integer>1</integer>"))}),
         withFix("Info.plist")},
        {"key-is-a-list",
         project({app, watchWith("Info.plist", entry(kKey, test::texts({"com.example.app"})))}),
         withFix("Info.plist")},
        {"empty-info-plist", project({app, watchWith("Info.plist", "")}), withFix("Info.plist")},
        {"watch-names-no-info-plist", project({app, watch}), withFix("Info.plist")},
        {"missing-and-app-without-bundle-id",
         project({Target("App", application), watchWith("Info.plist", "")}), withoutFix},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = check.run(c.project);
        ASSERT_TRUE(result.has_value());
        EXPECT_EQ(test::describe(*result), test::describe(c.expected));
        EXPECT_TRUE(*result == c.expected);
    }
}

TEST_F(WatchCompanionMismatchCheckTest, UnreadableInfoPlistFailsTheCheck) {
    EXPECT_THROW((void)check.run(project({app, withInfoPlist(watch, dir.file("Gone.plist"))})),
                 plist::FileReadError);
    const std::string truncated = test::truncatedDocument(entry(kKey, text("com.example.app")));
    EXPECT_THROW((void)check.run(
                     project({app, withInfoPlist(watch, dir.write("Truncated.plist", truncated))})),
                 plist::ParseError);
}

TEST(WatchCompanionAsBuilt, ComparesEachEmbeddedWatchAppWithTheIOSAppAroundIt) {
    using test::builtProject;
    using test::BuiltTarget;
    const WatchCompanionMismatchCheck check{kID};
    const auto companion = [](const char* id) {
        return test::plistOf({{kKey, id}});
    };
    const auto app = [] {
        return BuiltTarget("App", application, Platform::iOS, TargetRole::app)
            .mainApp()
            .embeds({"Watch"})
            .bundleID("com.a.app");
    };
    const auto watch = [](plist::Dictionary info) {
        return BuiltTarget("Watch", watchApp, Platform::watchOS, TargetRole::embedded)
            .host("App")
            .bundleID("com.a.app.watchkitapp")
            .infoPlist(std::move(info));
    };
    // Xcode 14 writes the companion as a build setting and generates the key.
    const TargetContext generated =
        watch(companion("com.a.app"))
            .setting("INFOPLIST_KEY_WKCompanionAppBundleIdentifier", "com.a.app");
    const TargetContext unknownKey =
        watch({}).unknown("Info.plist WKCompanionAppBundleIdentifier", "Ids.xcconfig is missing");
    const TargetContext unknownAppID =
        BuiltTarget("App", application, Platform::iOS, TargetRole::app)
            .mainApp()
            .embeds({"Watch"})
            .unknown("PRODUCT_BUNDLE_IDENTIFIER", "Ids.xcconfig is missing");
    const TargetContext watchOnly =
        BuiltTarget("Watch", watchApp, Platform::watchOS, TargetRole::app).mainApp().infoPlist({});
    TargetContext legacyWatch = watch(companion("com.a.App")).embeds({"Watch Extension"});
    legacyWatch.built->productType = "com.apple.product-type.application.watchapp2";
    const TargetContext legacyExtension =
        BuiltTarget("Watch Extension", watchExtension, Platform::watchOS, TargetRole::embedded)
            .host("Watch")
            .bundleID("com.a.app.watchkitapp.watchkitextension")
            .infoPlist({});

    constexpr const char* kMissingID = "watch.companion.missing";
    test::expectBuiltOutcomes(
        check,
        {
            {"no watch app", builtProject({app()}), kID, Severity::success, "No Watch App", ""},
            {"a generated key naming the app", builtProject({app(), generated}), kID,
             Severity::success, "Watch Companion Configuration Valid", ""},
            {"a key in the file naming another app",
             builtProject({app(), watch(companion("com.b.app"))}), kID, Severity::error,
             "Watch Companion App ID Mismatch",
             "• Watch names com.b.app, but its iOS app App is com.a.app (Debug, Release)"},
            {"no key at all", builtProject({app(), watch({})}), kMissingID, Severity::error,
             "Watch Companion App ID Missing",
             "• Watch, embedded in App, has no WKCompanionAppBundleIdentifier (Debug, Release)"},
            {"a key whose value cannot be known", builtProject({app(), unknownKey}), kID,
             Severity::success, "Watch Companion Configuration Valid", ""},
            {"an app id that cannot be known", builtProject({unknownAppID, watch(companion("x"))}),
             kID, Severity::success, "Watch Companion Configuration Valid", ""},
            {"a watch-only app names no companion", builtProject({watchOnly}), kID,
             Severity::success, "Watch Companion Configuration Valid", ""},
            {"a legacy watch app is compared, not its extension",
             builtProject({app(), legacyWatch, legacyExtension}), kID, Severity::error,
             "Watch Companion App ID Mismatch", "Watch names com.a.App, but its iOS app App is"},
        });

    // The fix writes the value where it came from: the setting or the file.
    TargetContext generatedWrong =
        watch(companion("com.b.app"))
            .setting("INFOPLIST_KEY_WKCompanionAppBundleIdentifier", "com.b.app");
    const auto fromSetting = check.run(builtProject({app(), generatedWrong}));
    ASSERT_TRUE(fromSetting->fix.has_value());
    EXPECT_EQ(
        fromSetting->fix->steps.at(0).action,
        FixAction(SetBuildSetting{"Watch", "All Configurations",
                                  "INFOPLIST_KEY_WKCompanionAppBundleIdentifier", "com.a.app"}));
    EXPECT_EQ(fromSetting->evidence.at(0).source,
              EvidenceSource(PlistSource{"Watch", "Info.plist (generated)"}));
    const auto fromFile = check.run(builtProject({app(), legacyWatch, legacyExtension}));
    EXPECT_EQ(fromFile->fix->steps.at(0).action,
              FixAction(UpdatePlistKey{"Watch", "Info.plist", kKey, "com.a.app"}));
    EXPECT_EQ(fromFile->affectedTargets.size(), 2u);
}

} // namespace
} // namespace kelvane
