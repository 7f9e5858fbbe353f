#include "checks/CloudKitEntitlementCheck.h"

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
using test::NoIssue;
using test::project;
using test::Target;
using test::texts;
using test::withEntitlements;
using enum TargetType;

constexpr const char* kID = "cloudkit.container.mismatch";
constexpr const char* kKey = "com.apple.developer.icloud-container-identifiers";

const Headline kMissing{kID, Severity::error, "CloudKit Container Identifier Missing"};

EvidenceItem bundleIDEvidence(std::string target, std::string identifier) {
    return {BuildSettingSource{std::move(target), "Debug"}, "PRODUCT_BUNDLE_IDENTIFIER",
            std::move(identifier), std::nullopt};
}

EvidenceItem containerEvidence(std::string target, std::string file, std::string value,
                               std::optional<std::string> expected = std::nullopt) {
    return {EntitlementsSource{std::move(target), std::move(file)}, kKey, std::move(value),
            std::move(expected)};
}

DoctorIssue missing(std::string description, std::vector<EvidenceItem> evidence,
                    std::string fileName, std::vector<std::string> newContainers) {
    return DoctorIssue{
        .id = kID,
        .severity = Severity::error,
        .title = "CloudKit Container Identifier Missing",
        .description = std::move(description),
        .impact = "CloudKit API calls will fail at runtime with authorization errors. Data sync "
                  "will not work.",
        .evidence = std::move(evidence),
        .affectedTargets = {{"App", application, "com.example.app"}},
        .fix = DoctorFix{
            .summary = "Add expected CloudKit container identifier to entitlements",
            .safety = FixSafety::requiresConfirmation,
            .steps = {{"Add 'iCloud.com.example.app' to iCloud container identifiers",
                       UpdateEntitlement{"App", std::move(fileName), kKey,
                                         EntitlementValue::array(std::move(newContainers))}}},
            .warningMessage = "Ensure this container identifier matches your App ID "
                              "configuration in the Apple Developer Portal."}};
}

class CloudKitEntitlementCheckTest : public ::testing::Test {
protected:
    // A target whose entitlements file, named `file`, lists `containersXml`.
    TargetContext containing(const Target& target, const std::string& file,
                             const std::string& containersXml) {
        return withEntitlements(target, dir.write(std::to_string(++folders) + "/" + file,
                                                  test::plistDocument(entry(kKey, containersXml))));
    }

    testing::TempDir dir;
    int folders = 0;
    const CloudKitEntitlementCheck check{kID, kKey};
};

TEST_F(CloudKitEntitlementCheckTest, Outcomes) {
    const Target app = Target("App", application).bundleID("com.example.app");
    const Target widget = Target("Widget", widgetExtension).bundleID("com.example.app.widget");
    const std::string expected = "iCloud.com.example.app";

    test::expectOutcomes(
        check,
        {
            {"no-target-declares-containers",
             project({withEntitlements(app, dir.write("None.entitlements",
                                                      test::plistDocument(
                                                          entry("aps-environment", "<string/>")))),
                      widget}),
             NoIssue{}},
            {"only-extension-declares",
             project({app, containing(widget, "W.entitlements", texts({expected}))}), NoIssue{}},
            {"no-main-app", project({containing(widget, "W.entitlements", texts({"iCloud.x"}))}),
             NoIssue{}},
            {"app-without-bundle-id",
             project(
                 {containing(Target("App", application), "A.entitlements", texts({"iCloud.x"}))}),
             NoIssue{}},
            {"containers-of-unexpected-type",
             project({containing(app, "A.entitlements", "<true/>")}), NoIssue{}},
            // Evidence names the real file, the containers in file order.
            {"expected-container-declared",
             project({containing(app, "App.entitlements", texts({expected, "iCloud.shared"}))}),
             DoctorIssue{kID,
                         Severity::success,
                         "CloudKit Configuration Valid",
                         "CloudKit container identifier 'iCloud.com.example.app' is correctly "
                         "configured in entitlements.",
                         "No impact - CloudKit is properly configured.",
                         {containerEvidence("App", "App.entitlements",
                                            "iCloud.com.example.app, iCloud.shared"),
                          bundleIDEvidence("App", "com.example.app")},
                         {{"App", application, "com.example.app"}},
                         std::nullopt}},
            {"single-text-names-another-container",
             project({containing(app, "App.entitlements", test::text("iCloud.com.example.other"))}),
             missing("CloudKit is enabled but the expected container identifier "
                     "'iCloud.com.example.app' is not in the declared containers: "
                     "[iCloud.com.example.other]",
                     {containerEvidence("App", "App.entitlements", "iCloud.com.example.other",
                                        "Should include: iCloud.com.example.app"),
                      bundleIDEvidence("App", "com.example.app")},
                     "App.entitlements", {"iCloud.com.example.other", expected})},
            {"empty-container-list", project({containing(app, "App.entitlements", "<array/>")}),
             missing("CloudKit entitlement is present but no container identifiers are "
                     "configured.",
                     {containerEvidence("App", "App.entitlements", "",
                                        "Should include: iCloud.com.example.app"),
                      bundleIDEvidence("App", "com.example.app")},
                     "App.entitlements", {expected})},
            {"container-differs-in-case",
             project({containing(app, "App.entitlements", texts({"icloud.com.example.app"}))}),
             kMissing},
            // The containers come from a namesake of the main app; the main
            // app itself names no file, so the fix falls back to a fixed name.
            {"main-app-names-no-file",
             project({app, containing(Target("App", framework), "F.entitlements",
                                      texts({"iCloud.other"}))}),
             missing("CloudKit is enabled but the expected container identifier "
                     "'iCloud.com.example.app' is not in the declared containers: [iCloud.other]",
                     {bundleIDEvidence("App", "com.example.app")}, "Entitlements.plist",
                     {"iCloud.other", expected})},
        });
}

TEST_F(CloudKitEntitlementCheckTest, TruncatedEntitlementsFailTheCheck) {
    const std::string truncated = test::truncatedDocument(entry(kKey, texts({"iCloud.x"})));
    const ProjectContext broken =
        project({withEntitlements(Target("App", application).bundleID("com.example.app"),
                                  dir.write("Truncated.entitlements", truncated))});
    EXPECT_THROW((void)check.run(broken), plist::ParseError);
}

TEST(CloudKitAsBuilt, HoldsEachTargetToWhatItsEntitlementsAskFor) {
    using test::builtConfiguration;
    using test::builtProject;
    using test::BuiltTarget;
    const CloudKitEntitlementCheck check{kID, kKey};
    constexpr const char* kServices = "com.apple.developer.icloud-services";
    const auto iCloud = [](plist::Array services, plist::Array containers) {
        return test::plistOf({{kServices, std::move(services)}, {kKey, std::move(containers)}});
    };
    const auto app = [](plist::Dictionary entitlements) {
        return BuiltTarget("App", application, Platform::iOS, TargetRole::app)
            .mainApp()
            .embeds({"Widget"})
            .bundleID("com.a.app")
            .entitlements(std::move(entitlements));
    };
    const auto widget = [](plist::Dictionary entitlements) {
        return BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded)
            .host("App")
            .bundleID("com.a.app.widget")
            .entitlements(std::move(entitlements));
    };
    const plist::Dictionary appContainer = iCloud({"CloudKit"}, {"iCloud.com.a.app"});
    const TargetContext unknownContainers =
        app(iCloud({"CloudKit"}, {}))
            .unknown("entitlements " + std::string(kKey), "Ids.xcconfig is missing");

    constexpr const char* kValid = "CloudKit Configuration Valid";
    test::expectBuiltOutcomes(
        check,
        {
            {"a container named freely",
             builtProject({app(iCloud({"CloudKit"}, {"iCloud.anything"}))}), kID, Severity::success,
             kValid, ""},
            {"an extension sharing one of the app's containers",
             builtProject({app(iCloud({"CloudKit"}, {"iCloud.com.a.app", "iCloud.shared"})),
                           widget(iCloud({"CloudKit"}, {"iCloud.shared"}))}),
             kID, Severity::success, kValid, ""},
            {"CloudKit without containers", builtProject({app(iCloud({"CloudKit"}, {}))}), kID,
             Severity::error, "CloudKit Container Identifier Missing",
             "• App uses CloudKit but lists no iCloud container (Debug, Release)"},
            {"containers that cannot be known", builtProject({unknownContainers}), kID,
             Severity::success, kValid, ""},
            {"an extension with another container",
             builtProject(
                 {app(appContainer), widget(iCloud({"CloudKit"}, {"iCloud.com.a.widget"}))}),
             kID, Severity::warning, "iCloud Container Not Shared With Host App",
             "• Widget uses iCloud.com.a.widget, its host App iCloud.com.a.app: no container in "
             "common (Debug, Release)"},
            {"containers lost in Release only",
             builtProject(
                 {builtConfiguration("Debug", {app(appContainer), widget(appContainer)}),
                  builtConfiguration("Release",
                                     {app(appContainer), widget(iCloud({"CloudDocuments"}, {}))})}),
             kID, Severity::error, "CloudKit Container Identifier Missing",
             "• Widget uses CloudDocuments but lists no iCloud container (Release)"},
        });

    // Key-value storage alone needs no container and gives nothing to report.
    const plist::Dictionary keyValueOnly =
        test::plistOf({{"com.apple.developer.ubiquity-kvstore-identifier", "ABCDE12345.com.a.app"},
                       {kKey, plist::Array{}}});
    EXPECT_FALSE(check.run(builtProject({app(keyValueOnly)})).has_value());

    // Content without a container is offered its app's.
    const auto missing =
        check.run(builtProject({app(appContainer), widget(iCloud({"CloudKit"}, {}))}));
    ASSERT_TRUE(missing->fix.has_value());
    EXPECT_EQ(missing->fix->steps.at(0).action,
              FixAction(UpdateEntitlement{"Widget", "Widget.entitlements", kKey,
                                          EntitlementValue::array({"iCloud.com.a.app"})}));
}

} // namespace
} // namespace kelvane
