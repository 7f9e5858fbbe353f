#include "checks/EmbeddedBundleIdentifierCheck.h"
#include "checks/EmbeddedVersionCheck.h"
#include "checks/TestHostCheck.h"
#include "checks/UsageDescriptionCheck.h"
#include "graph/AsBuiltProject.h"

#include "BuiltProjects.h"
#include "ProjectFiles.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

// The checks only the as-built reading runs: what an upload or the build
// would refuse.
namespace kelvane {
namespace {

using test::BuiltTarget;
using test::builtConfiguration;
using test::builtProject;
using enum TargetType;

plist::Dictionary dict(std::vector<std::pair<std::string, plist::Value>> entries) {
    plist::Dictionary values;
    for (auto& [key, value] : entries) {
        values.insert(key, std::move(value));
    }
    return values;
}

plist::Dictionary versions(std::string version, std::string build) {
    return dict({{"CFBundleShortVersionString", version}, {"CFBundleVersion", build}});
}

BuiltTarget app() {
    return BuiltTarget("App", application, Platform::iOS, TargetRole::app)
        .mainApp().bundleID("com.a.app").setting("PRODUCT_NAME", "App");
}

BuiltTarget widget() {
    return BuiltTarget("Widget", widgetExtension, Platform::iOS, TargetRole::embedded)
        .host("App").bundleID("com.a.app.widget");
}

struct Case {
    const char* name;
    ProjectContext project;
    Severity severity;
    // Text the description must hold; empty for a pass.
    std::string line;
};

void expectCases(const std::function<std::optional<DoctorIssue>(const ProjectContext&)>& run,
                 const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::optional<DoctorIssue> issue = run(c.project);
        ASSERT_TRUE(issue.has_value());
        EXPECT_EQ(issue->severity, c.severity) << issue->description;
        if (!c.line.empty()) {
            EXPECT_NE(issue->description.find(c.line), std::string::npos) << issue->description;
        }
    }
}

TEST(UploadChecks, ReportNothingReadLiterally) {
    ProjectContext literal;
    TargetContext app;
    app.name = "App";
    app.type = application;
    literal.targets.push_back(app);
    EXPECT_FALSE(EmbeddedVersionCheck().run(literal));
    EXPECT_FALSE(EmbeddedBundleIdentifierCheck().run(literal));
    EXPECT_FALSE(TestHostCheck().run(literal));
    EXPECT_FALSE(UsageDescriptionCheck().run(literal));
}

TEST(UploadChecks, EmbeddedVersions) {
    const auto framework = BuiltTarget("Kit", TargetType::framework, Platform::iOS, TargetRole::embedded)
                               .host("App").infoPlist(versions("9.9", "1"));
    expectCases([](const ProjectContext& p) { return EmbeddedVersionCheck().run(p); },
                {
                    {"equal versions pass",
                     builtProject({app().infoPlist(versions("2.0", "7")),
                                   widget().infoPlist(versions("2.0", "7")), framework}),
                     Severity::success, ""},
                    {"an unknown version is not compared",
                     builtProject({app().infoPlist(versions("2.0", "7")),
                                   widget().infoPlist(dict({})).unknown("MARKETING_VERSION", "x")}),
                     Severity::success, ""},
                    {"a build number behind the app's",
                     builtProject({app().infoPlist(versions("2.0", "7")),
                                   widget().infoPlist(versions("2.0", "6"))}),
                     Severity::warning,
                     "• Widget ships build number 6, App ships 7 (CFBundleVersion) (Debug, Release)"},
                    {"a difference in one configuration names it",
                     builtProject({builtConfiguration("Debug", {app().infoPlist(versions("2.0", "7")),
                                                                widget().infoPlist(versions("2.0", "7"))}),
                                   builtConfiguration("Beta", {app().infoPlist(versions("2.1b", "7")),
                                                               widget().infoPlist(versions("2.0", "7"))})}),
                     Severity::warning, "ships version 2.0, App ships 2.1b (CFBundleShortVersionString) (Beta)"},
                });
}

// Through real files: a generated Info.plist takes MARKETING_VERSION from an
// .xcconfig over the file's own text, so a file that says $(APP_VERSION)
// still ships the setting's value.
TEST(UploadChecks, EmbeddedVersionsAsTheBuildWritesThem) {
    testing::TempDir dir;
    dir.write("P/P.xcodeproj/project.pbxproj", testing::pbxproj(R"pbx(
        ROOT = {isa = PBXProject; buildConfigurationList = PL; mainGroup = G; targets = (APP, EXT); };
        G = {isa = PBXGroup; children = (X); sourceTree = "<group>"; };
        X = {isa = PBXFileReference; path = Versions.xcconfig; sourceTree = "<group>"; };
        PL = {isa = XCConfigurationList; buildConfigurations = (PR); };
        PR = {isa = XCBuildConfiguration; name = Release; baseConfigurationReference = X;
              buildSettings = {SDKROOT = iphoneos; APP_VERSION = 1.0; }; };
        APP = {isa = PBXNativeTarget; name = App; productType = "com.apple.product-type.application";
               buildConfigurationList = AL; buildPhases = (EMBED); };
        EMBED = {isa = PBXCopyFilesBuildPhase; dstSubfolderSpec = 13; files = (BF); };
        BF = {isa = PBXBuildFile; fileRef = EXT_P; };
        AL = {isa = XCConfigurationList; buildConfigurations = (AR); };
        AR = {isa = XCBuildConfiguration; name = Release; buildSettings = {
              INFOPLIST_FILE = App.plist; GENERATE_INFOPLIST_FILE = YES; }; };
        EXT = {isa = PBXNativeTarget; name = Ext; productType = "com.apple.product-type.app-extension";
               productReference = EXT_P; buildConfigurationList = EL; };
        EL = {isa = XCConfigurationList; buildConfigurations = (ER); };
        ER = {isa = XCBuildConfiguration; name = Release; buildSettings = {
              INFOPLIST_FILE = Ext.plist; MARKETING_VERSION = 3.0; }; };
    )pbx"));
    dir.write("P/Versions.xcconfig", "MARKETING_VERSION = 2.0\nCURRENT_PROJECT_VERSION = 5\n");
    const std::string plist = R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>
        <key>CFBundleShortVersionString</key><string>$(APP_VERSION)</string>
        <key>CFBundleVersion</key><string>$(CURRENT_PROJECT_VERSION)</string></dict></plist>)";
    dir.write("P/App.plist", plist);
    dir.write("P/Ext.plist", plist);
    const ProjectContext project =
        AsBuiltProject::load(dir.file("P/P.xcodeproj")).resolveForScan(std::nullopt);
    const std::optional<DoctorIssue> issue = EmbeddedVersionCheck().run(project);
    ASSERT_TRUE(issue.has_value());
    // The app's generated 2.0 wins over its file's 1.0; the extension's file
    // ships its 1.0: the build numbers agree.
    EXPECT_NE(issue->description.find("• Ext ships version 1.0, App ships 2.0"), std::string::npos)
        << issue->description;
    EXPECT_EQ(issue->description.find("build number"), std::string::npos);
    ASSERT_FALSE(issue->evidence.empty());
    ASSERT_TRUE(issue->evidence.front().origin.has_value());
    EXPECT_EQ(issue->evidence.front().origin->file, dir.file("P/Versions.xcconfig"));
    EXPECT_EQ(issue->evidence.front().origin->line, 1u);
}

TEST(UploadChecks, DuplicateIdsInsideOneApp) {
    const auto kit = [](std::string id) {
        return BuiltTarget("Kit", TargetType::framework, Platform::iOS, TargetRole::embedded)
            .host("App").bundleID(std::move(id));
    };
    const TargetContext sibling =
        BuiltTarget("Other", application, Platform::iOS, TargetRole::app).bundleID("com.a.app.widget");
    expectCases([](const ProjectContext& p) { return EmbeddedBundleIdentifierCheck().run(p); },
                {
                    {"unique ids pass; another app's equal id is not inside",
                     builtProject({app(), widget(), kit("com.a.kit"), sibling}), Severity::success, ""},
                    {"a framework sharing the widget's id",
                     builtProject({app(), widget(), kit("com.a.app.widget")}), Severity::error,
                     "• Inside App: Widget, Kit are all com.a.app.widget (Debug, Release)"},
                });
}

TEST(UploadChecks, TestHosts) {
    const auto tests = [] {
        return BuiltTarget("AppTests", unitTestBundle, Platform::iOS, TargetRole::testBundle)
            .host("App")
            .setting("TEST_HOST", "/b/Release-iphoneos/App.app/App")
            .setting("BUNDLE_LOADER", "/b/Release-iphoneos/App.app/App");
    };
    const auto uiTests = [](std::string target) {
        return BuiltTarget("AppUITests", uiTestBundle, Platform::iOS, TargetRole::testBundle)
            .setting("TEST_TARGET_NAME", std::move(target));
    };
    expectCases([](const ProjectContext& p) { return TestHostCheck().run(p); },
                {
                    {"hosts that exist pass", builtProject({app(), tests(), uiTests("App")}),
                     Severity::success, ""},
                    {"a per-configuration PRODUCT_NAME breaks TEST_HOST there, once",
                     builtProject({builtConfiguration("Debug", {app(), tests()}),
                                   builtConfiguration("Beta", {app().setting("PRODUCT_NAME", "App Beta"),
                                                               tests()})}),
                     Severity::error,
                     "• AppTests: TEST_HOST names App.app; the apps built are App Beta.app (Beta)"},
                    {"UI tests naming a renamed target",
                     builtProject({app(), uiTests("OldApp")}), Severity::error,
                     "AppUITests: TEST_TARGET_NAME names OldApp, which is no target"},
                });
}

TEST(UploadChecks, PurposeStrings) {
    const auto withModes = [](std::vector<std::string> modes, plist::Dictionary more = {}) {
        plist::Array array;
        for (auto& mode : modes) {
            array.emplace_back(mode);
        }
        more.insert("UIBackgroundModes", plist::Value(std::move(array)));
        return more;
    };
    const plist::Dictionary health = dict({{"com.apple.developer.healthkit", true}});
    expectCases(
        [](const ProjectContext& p) { return UsageDescriptionCheck().run(p); },
        {
            {"a generated description counts as present",
             builtProject({app().infoPlist(dict({{"NSHealthShareUsageDescription", "Reads steps"}}))
                               .setting("INFOPLIST_KEY_NSHealthShareUsageDescription", "Reads steps")
                               .entitlements(health)}),
             Severity::success, ""},
            {"HealthKit without a share description",
             builtProject({app().infoPlist(dict({})).entitlements(health)}), Severity::error,
             "App declares the com.apple.developer.healthkit entitlement without "
             "NSHealthShareUsageDescription"},
            {"any location description will do",
             builtProject({app().infoPlist(withModes({"location"}, dict({{"NSLocationWhenInUseUsageDescription", "x"}})))}),
             Severity::success, ""},
            {"background location without any description",
             builtProject({app().infoPlist(withModes({"location"}))}), Severity::error,
             "the location background mode without NSLocationAlwaysAndWhenInUseUsageDescription"},
            {"remote notifications without the push entitlement",
             builtProject({app().infoPlist(withModes({"remote-notification"})).entitlements(dict({}))}),
             Severity::error, "without aps-environment"},
            {"unknown entitlements are not held against the app",
             builtProject({app().infoPlist(withModes({"remote-notification"}))
                               .unknown("CODE_SIGN_ENTITLEMENTS", "Secrets.xcconfig is missing")}),
             Severity::success, ""},
        });
}

} // namespace
} // namespace kelvane
