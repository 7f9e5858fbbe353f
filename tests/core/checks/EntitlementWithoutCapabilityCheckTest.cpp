#include "checks/EntitlementWithoutCapabilityCheck.h"

#include "BuiltProjects.h"
#include "CheckOutcomes.h"
#include "PlistFixtures.h"
#include "TempDir.h"
#include "plist/ParseError.h"
#include "scanner/CheckRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kelvane {
namespace {

using test::entry;
using test::Headline;
using test::project;
using test::Target;
using test::text;
using test::withEntitlements;
using enum TargetType;

constexpr const char* kID = "entitlement.without.capability";
constexpr const char* kPush = "aps-environment";
constexpr const char* kDomains = "com.apple.developer.associated-domains";
constexpr const char* kContainers = "com.apple.developer.icloud-container-identifiers";
constexpr const char* kServices = "com.apple.developer.icloud-services";
constexpr const char* kSiri = "com.apple.developer.siri";

const Headline kNothingFound{kID, Severity::success, "No Capability-Requiring Entitlements"};

EvidenceItem found(std::string target, std::string key, std::string value) {
    return {EntitlementsSource{std::move(target), "Entitlements"}, std::move(key), std::move(value),
            std::nullopt};
}

DoctorIssue warning(std::string lines, std::vector<EvidenceItem> evidence,
                    std::vector<TargetRef> affected) {
    return DoctorIssue{
        .id = kID,
        .severity = Severity::warning,
        .title = "Entitlements May Require Capabilities",
        .description =
            "Detected entitlements that typically require corresponding capabilities to be "
            "enabled in Xcode.\n\nEntitlements found:\n" +
            lines +
            "\n\nIMPORTANT: This check detects entitlement presence only.\n• If these "
            "capabilities are already enabled in your Xcode project, you can ignore this "
            "warning\n• If capabilities are NOT enabled, your app may build successfully but "
            "fail at runtime\n• Verify in Xcode: Target → Signing & Capabilities\n\nNote: Kelvane "
            "cannot read .pbxproj capability flags directly (they're in a complex format).\nThis "
            "is a heuristic check to remind you to verify capability configuration.",
        .impact = "If capabilities are not enabled in Xcode, the app may build successfully but "
                  "fail silently at runtime when trying to use these features.",
        .evidence = std::move(evidence),
        .affectedTargets = std::move(affected),
        .fix = DoctorFix{
            .summary = "Verify Capabilities in Xcode",
            .safety = FixSafety::manualOnly,
            .steps = {{"Verify capabilities are enabled in Xcode project",
                       ManualInstruction{{"Open project in Xcode", "Select each affected target",
                                          "Go to Signing & Capabilities tab",
                                          "Ensure required capabilities are added",
                                          "If capability is missing, click '+ "
                                          "Capability' to add it"}}}},
            .warningMessage = std::nullopt}};
}

class EntitlementWithoutCapabilityCheckTest : public ::testing::Test {
protected:
    TargetContext declaring(const Target& target, const std::string& entries) {
        return withEntitlements(target, dir.write(std::to_string(++files) + ".entitlements",
                                                  test::plistDocument(entries)));
    }

    testing::TempDir dir;
    int files = 0;
    // Not in key order, so that following the map's own order shows.
    const EntitlementWithoutCapabilityCheck check{{{kSiri, "Siri"},
                                                   {kPush, "Push Notifications"},
                                                   {kDomains, "Associated Domains"},
                                                   {kContainers, "iCloud"},
                                                   {kServices, "iCloud"}}};
};

TEST_F(EntitlementWithoutCapabilityCheckTest, Outcomes) {
    const Target app = Target("App", application).bundleID("com.example.app");
    const Target widget = Target("Widget", widgetExtension);
    const TargetRef appRef{"App", application, "com.example.app"};
    const TargetRef widgetRef{"Widget", widgetExtension, std::nullopt};

    test::expectOutcomes(
        check,
        {
            {"no-entitlements", project({app, widget}), kNothingFound},
            {"only-app-groups",
             project({declaring(
                 app, entry("com.apple.security.application-groups", test::texts({"group.a"})))}),
             kNothingFound},
            {"key-differs-in-case",
             project({declaring(app, entry("com.apple.developer.Siri", "<true/>"))}),
             kNothingFound},
            {"push-in-development", project({declaring(app, entry(kPush, text("development")))}),
             warning("App has 'aps-environment' entitlement (requires 'Push Notifications' "
                     "capability)",
                     {found("App", kPush, "development")}, {appRef})},
            // Lines of one target follow the map, whatever the file's order;
            // both iCloud keys give lines, the target is listed once.
            {"two-targets-in-project-order",
             project({declaring(widget, entry(kDomains, test::texts({"a", "b"}))),
                      declaring(app, entry(kServices, test::texts({"CloudKit"})) +
                                         entry(kContainers, "<array/>") +
                                         entry(kPush, text("production")))}),
             warning("Widget has 'com.apple.developer.associated-domains' entitlement (requires "
                     "'Associated Domains' capability)\n"
                     "App has 'aps-environment' entitlement (requires 'Push Notifications' "
                     "capability)\n"
                     "App has 'com.apple.developer.icloud-container-identifiers' entitlement "
                     "(requires 'iCloud' capability)\n"
                     "App has 'com.apple.developer.icloud-services' entitlement (requires "
                     "'iCloud' capability)",
                     {found("Widget", kDomains, "[2 items]"), found("App", kPush, "production"),
                      found("App", kContainers, "[0 items]"), found("App", kServices, "[1 items]")},
                     {widgetRef, appRef})},
        });
}

TEST_F(EntitlementWithoutCapabilityCheckTest, NamesakesAreListedOnce) {
    const auto issue =
        check.run(project({declaring(Target("App", application), entry(kSiri, "<true/>")),
                           declaring(Target("App", framework), entry(kPush, text("x")))}));
    ASSERT_TRUE(issue);
    EXPECT_EQ(issue->evidence.size(), 2u);
    ASSERT_EQ(issue->affectedTargets.size(), 1u);
    EXPECT_EQ(issue->affectedTargets[0].type, application);
}

TEST_F(EntitlementWithoutCapabilityCheckTest, RendersEveryKindOfValue) {
    const struct {
        const char* xml;
        const char* rendered;
    } cases[] = {
        {"<string>development</string>", "development"},
        {"<string></string>", ""},
        {"<array><string>a</string><integer>1</integer></array>", "[2 items]"},
        {"<true/>", "true"},
        {"<false/>", "false"},
        {"<integer>-42</integer>", "-42"},
        {"<real>0.5</real>", "0.5"},
        {"<real>1e16</real>", "1e+16"},
        {"<date>2024-05-01T12:00:00Z</date>", "2024-05-01T12:00:00Z"},
        {"<data>AAEC</data>", "<3 bytes>"},
        {"<dict><key>a</key><true/><key>b</key><false/></dict>", "{2 keys}"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.xml);
        const auto issue =
            check.run(project({declaring(Target("App", application), entry(kSiri, c.xml))}));
        ASSERT_TRUE(issue && issue->evidence.size() == 1);
        EXPECT_EQ(issue->evidence[0].value, c.rendered);
    }
}

// The registry's map lists the lines of one target in the order of the
// documented table, Push Notifications first and ClassKit last.
TEST_F(EntitlementWithoutCapabilityCheckTest, RegistryListsLinesInTableOrder) {
    const std::vector<std::pair<std::string, std::string>> table = {
        {"aps-environment", "Push Notifications"},
        {"com.apple.developer.associated-domains", "Associated Domains"},
        {"com.apple.developer.icloud-container-identifiers", "iCloud"},
        {"com.apple.developer.icloud-services", "iCloud"},
        {"com.apple.developer.in-app-payments", "Apple Pay"},
        {"com.apple.developer.healthkit", "HealthKit"},
        {"com.apple.developer.homekit", "HomeKit"},
        {"com.apple.developer.networking.networkextension", "Network Extensions"},
        {"com.apple.developer.networking.vpn.api", "Personal VPN"},
        {"com.apple.developer.siri", "Siri"},
        {"com.apple.external-accessory.wireless-configuration", "Wireless Accessory Configuration"},
        {"com.apple.developer.game-center", "Game Center"},
        {"com.apple.developer.ClassKit-environment", "ClassKit"},
    };
    std::string entries;
    for (auto it = table.rbegin(); it != table.rend(); ++it) {
        entries += entry(it->first, "<true/>");
    }
    const auto registry = makeCheckRegistry();
    const auto registered = std::find_if(registry.begin(), registry.end(),
                                         [](const AnyCheck& c) { return c.id() == kID; });
    ASSERT_NE(registered, registry.end());
    const auto issue = registered->run(project({declaring(Target("App", application), entries)}));
    ASSERT_TRUE(issue);
    ASSERT_EQ(issue->evidence.size(), table.size());
    std::string lines;
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(issue->evidence[i].key, table[i].first);
        lines += "\nApp has '" + table[i].first + "' entitlement (requires '" + table[i].second +
                 "' capability)";
    }
    EXPECT_NE(issue->description.find(lines.substr(1)), std::string::npos) << issue->description;
}

TEST_F(EntitlementWithoutCapabilityCheckTest, TruncatedEntitlementsFailTheCheck) {
    const std::string truncated = test::truncatedDocument(entry(kPush, text("development")));
    EXPECT_THROW((void)check.run(project({withEntitlements(
                     Target("App", application), dir.write("Truncated.entitlements", truncated))})),
                 plist::ParseError);
}

TEST(EntitlementWithoutCapabilityAsBuilt, RemindsOnlyWhereTheProjectRecordsACapabilityOff) {
    using test::BuiltTarget;
    using test::builtProject;
    const EntitlementWithoutCapabilityCheck check{{{kPush, "Push Notifications"}, {kServices, "iCloud"}}};
    const auto entitlements = [](std::string key) {
        return plist::Dictionary({{std::move(key), plist::Value(std::string("development"))}});
    };
    const auto app = [&](std::string key) {
        return BuiltTarget("App", application, Platform::iOS, TargetRole::app).mainApp().entitlements(
            entitlements(std::move(key)));
    };

    struct Case {
        const char* name;
        TargetContext target;
        Severity severity;
        std::string line;
    };
    const std::vector<Case> cases{
        {"no record at all: the entitlements file is the capability", app(kPush), Severity::success,
         ""},
        {"recorded on", app(kPush).capability("com.apple.Push", true), Severity::success, ""},
        {"recorded off, but no entitlement of it", app(kServices).capability("com.apple.Push", false),
         Severity::success, ""},
        {"recorded off beside its entitlement", app(kPush).capability("com.apple.Push", false),
         Severity::warning,
         "• App has 'aps-environment' entitlement, but its capability 'Push Notifications' "
         "(com.apple.Push) is recorded as off (Debug, Release)"},
        {"a capability known by the name the check's table gives it",
         app(kServices).capability("com.apple.iCloud", false), Severity::warning,
         "'com.apple.developer.icloud-services' entitlement, but its capability 'iCloud'"},
        {"a platform suffix names the same capability; keys beyond the table count",
         app("com.apple.security.application-groups").capability("com.apple.ApplicationGroups.iOS", false),
         Severity::warning, "capability 'App Groups' (com.apple.ApplicationGroups.iOS) is recorded as off"},
        {"a record of another platform that is on wins, whatever the suffix's case",
         app(kPush).capability("com.apple.Push", false).capability("com.apple.Push.watchos", true),
         Severity::success, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::optional<DoctorIssue> issue = check.run(builtProject({c.target}));
        ASSERT_TRUE(issue.has_value());
        if (c.severity == Severity::success) {
            EXPECT_EQ(issue, check.run(project({})));
            continue;
        }
        EXPECT_EQ(issue->severity, c.severity);
        EXPECT_NE(issue->description.find(c.line), std::string::npos) << issue->description;
    }
    // Evidence points at the record in the project file and at the entitlement.
    const auto issue = check.run(builtProject({app(kPush).capability("com.apple.Push", false)}));
    ASSERT_EQ(issue->evidence.size(), 2u);
    EXPECT_EQ(issue->evidence[0].source, EvidenceSource(CapabilitySource{"App", "com.apple.Push"}));
    EXPECT_EQ(issue->evidence[1].source, EvidenceSource(EntitlementsSource{"App", "App.entitlements"}));
}

} // namespace
} // namespace kelvane
