#include "ProjectFiles.h"
#include "TempDir.h"
#include "graph/AsBuiltProject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

namespace kelvane {
namespace {

using testing::pbxproj;
using testing::TempDir;

// One app and its widget, with values spread over every level Xcode reads:
// the project's .xcconfig (which includes a shared file and a secrets file
// the repository lacks), project settings, the target's .xcconfig and
// target settings, with conditions and references throughout.
const std::string kObjects = R"pbx(
    ROOT = {isa = PBXProject; buildConfigurationList = PL; mainGroup = G; targets = (APP, EXT, PODDED);
            attributes = {TargetAttributes = {EXT = {ProvisioningStyle = Manual; }; }; }; };
    G = {isa = PBXGroup; children = (CONFIG, PODS); sourceTree = "<group>"; };
    CONFIG = {isa = PBXGroup; children = (F_PROJECT, F_APP); path = Config; sourceTree = "<group>"; };
    F_PROJECT = {isa = PBXFileReference; path = Project.xcconfig; sourceTree = "<group>"; };
    F_APP = {isa = PBXFileReference; path = App.xcconfig; sourceTree = "<group>"; };
    PODS = {isa = PBXGroup; children = (F_PODS); name = Pods; sourceTree = "<group>"; };
    F_PODS = {isa = PBXFileReference; path = "Pods/Target Support Files/Pods-App/Pods-App.release.xcconfig";
              sourceTree = "<group>"; };
    PL = {isa = XCConfigurationList; buildConfigurations = (PD, PR, PB); defaultConfigurationName = Release; };
    PD = {isa = XCBuildConfiguration; name = Debug; baseConfigurationReference = F_PROJECT;
          buildSettings = {SDKROOT = iphoneos; IPHONEOS_DEPLOYMENT_TARGET = 16.0; }; };
    PR = {isa = XCBuildConfiguration; name = Release; baseConfigurationReference = F_PROJECT;
          buildSettings = {SDKROOT = iphoneos; IPHONEOS_DEPLOYMENT_TARGET = 16.0;
                           OTHER_FLAGS = "-project $(inherited)"; }; };
    PB = {isa = XCBuildConfiguration; name = Beta; baseConfigurationReference = F_PROJECT;
          buildSettings = {SDKROOT = iphoneos; IPHONEOS_DEPLOYMENT_TARGET = 16.0; }; };

    APP = {isa = PBXNativeTarget; name = App; productType = "com.apple.product-type.application";
           buildConfigurationList = L_APP; };
    L_APP = {isa = XCConfigurationList; buildConfigurations = (APP_D, APP_R); };
    APP_D = {isa = XCBuildConfiguration; name = Debug; baseConfigurationReference = F_APP; buildSettings = {}; };
    APP_R = {isa = XCBuildConfiguration; name = Release; baseConfigurationReference = F_APP;
             buildSettings = {
                 PRODUCT_NAME = "$(TARGET_NAME)";
                 OTHER_FLAGS = "$(inherited) -target";
                 "DEVELOPMENT_TEAM[sdk=iphoneos*]" = "$(SIGNING_TEAM)";
                 "DEVELOPMENT_TEAM[sdk=iphonesimulator*]" = "";
                 CODE_SIGN_ENTITLEMENTS = "$(SRCROOT)/App/App.entitlements";
                 INFOPLIST_FILE = "";
                 GENERATE_INFOPLIST_FILE = YES;
                 INFOPLIST_KEY_CFBundleDisplayName = "$(PRODUCT_NAME:upper)";
                 INFOPLIST_KEY_NSCameraUsageDescription = "Scans codes";
                 INFOPLIST_KEY_MyCustomKey = ignored;
             }; };

    EXT = {isa = PBXNativeTarget; name = "Share Ext"; productType = "com.apple.product-type.app-extension";
           buildConfigurationList = L_EXT; };
    L_EXT = {isa = XCConfigurationList; buildConfigurations = (EXT_R); };
    EXT_R = {isa = XCBuildConfiguration; name = Release; buildSettings = {
                 PRODUCT_BUNDLE_IDENTIFIER = "$(BASE_ID).$(TARGET_NAME:rfc1034identifier)";
                 INFOPLIST_FILE = "Share/Info.plist";
                 MARKETING_VERSION = 3.0; CODE_SIGN_STYLE = ""; }; };

    PODDED = {isa = PBXNativeTarget; name = Podded; productType = "com.apple.product-type.application";
              buildConfigurationList = L_POD; };
    L_POD = {isa = XCConfigurationList; buildConfigurations = (POD_R); };
    POD_R = {isa = XCBuildConfiguration; name = Release; baseConfigurationReference = F_PODS;
             buildSettings = {PRODUCT_BUNDLE_IDENTIFIER = com.example.podded; }; };
)pbx";

const std::string kProjectXcconfig = R"(// Shared by every target
#include? "Secrets.xcconfig"
#include "Shared.xcconfig"
BASE_ID = com.example
OTHER_FLAGS = -xcconfig
)";
const std::string kSharedXcconfig = "SIGNING_TEAM = ABCDE12345\nMARKETING_VERSION = 2.0\n"
                                    "MARKETING_VERSION[config=Beta] = 2.0-beta\n";
const std::string kAppXcconfig = "PRODUCT_BUNDLE_IDENTIFIER = $(BASE_ID).app\n"
                                 "OTHER_FLAGS = $(inherited) -target-xcconfig\n";
const std::string kEntitlements = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>com.apple.security.application-groups</key><array><string>group.$(CFBundleIdentifier)</string></array>
<key>keychain-access-groups</key><array><string>$(AppIdentifierPrefix)shared</string></array>
</dict></plist>)";
const std::string kShareInfo = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>CFBundleShortVersionString</key><string>$(MARKETING_VERSION)</string>
<key>CFBundleIdentifier</key><string>$(PRODUCT_BUNDLE_IDENTIFIER)</string>
</dict></plist>)";

std::optional<std::string> text(const plist::Dictionary& dictionary, std::string_view key) {
    const plist::Value* value = dictionary.find(key);
    return value && value->asString() ? std::optional<std::string>(*value->asString()) : std::nullopt;
}

std::optional<std::string> firstText(const plist::Dictionary& dictionary, std::string_view key) {
    const plist::Value* value = dictionary.find(key);
    const plist::Array* array = value ? value->asArray() : nullptr;
    return array && !array->empty() && array->front().asString()
               ? std::optional<std::string>(*array->front().asString())
               : std::nullopt;
}

class ResolvedSettings : public ::testing::Test {
protected:
    void SetUp() override {
        dir.write("P/P.xcodeproj/project.pbxproj", pbxproj(kObjects));
        dir.write("P/Config/Project.xcconfig", kProjectXcconfig);
        dir.write("P/Config/Shared.xcconfig", kSharedXcconfig);
        dir.write("P/Config/App.xcconfig", kAppXcconfig);
        dir.write("P/App/App.entitlements", kEntitlements);
        dir.write("P/Share/Info.plist", kShareInfo);
    }
    ProjectContext resolve(std::optional<std::string> configuration = std::nullopt) {
        return AsBuiltProject::load(dir.file("P/P.xcodeproj")).resolve(configuration);
    }
    TempDir dir;
};

TEST_F(ResolvedSettings, LevelsStackFromProjectXcconfigToTargetSettings) {
    const ProjectContext project = resolve();
    const TargetContext& app = project.targets[0];
    EXPECT_EQ(app.bundleIdentifier, "com.example.app");
    ASSERT_NE(app.built->setting("PRODUCT_BUNDLE_IDENTIFIER"), nullptr);
    EXPECT_EQ(app.built->setting("PRODUCT_BUNDLE_IDENTIFIER")->origin.file,
              dir.file("P/Config/App.xcconfig"));
    EXPECT_EQ(app.built->setting("PRODUCT_BUNDLE_IDENTIFIER")->origin.line, 1u);
    // Deployment target inherited from the project level.
    EXPECT_EQ(app.deploymentTarget, "16.0");
    EXPECT_EQ(app.built->setting("IPHONEOS_DEPLOYMENT_TARGET")->origin.level, "project");
}

TEST_F(ResolvedSettings, ConditionsMatchTheDeviceSDKAndEmptyValuesAreAbsent) {
    const ProjectContext project = resolve();
    // [sdk=iphoneos*] wins for a device build; the simulator's "" does not count.
    EXPECT_EQ(project.targets[0].developmentTeam, "ABCDE12345");
    // A target-level "" style falls back to the project's target attributes.
    EXPECT_EQ(project.targets[1].codeSignStyle, "Manual");
    // INFOPLIST_FILE = "" names no file.
    EXPECT_EQ(project.targets[0].infoPlistURL, std::nullopt);
}

TEST_F(ResolvedSettings, ConfigurationIsTheProjectDefaultUnlessNamedAndFallsBackPerTarget) {
    EXPECT_EQ(resolve().configuration, "Release");
    const ProjectContext beta = resolve("Beta");
    EXPECT_EQ(beta.configurations, (std::vector<std::string>{"Debug", "Release", "Beta"}));
    // The app has no Beta: it falls back to the project default (Release),
    // while CONFIGURATION, and so [config=Beta], stays Beta.
    EXPECT_EQ(beta.targets[0].bundleIdentifier, "com.example.app");
    EXPECT_EQ(text(*beta.targets[0].built->infoPlist, "CFBundleShortVersionString"),
              "2.0-beta");
    const ProjectContext debug = resolve("Debug");
    EXPECT_EQ(debug.targets[0].developmentTeam, std::nullopt);
}

TEST_F(ResolvedSettings, ReferencesExpandWithOperatorsInSettingsAndFiles) {
    const ProjectContext project = resolve();
    const TargetContext& share = project.targets[1];
    EXPECT_EQ(share.bundleIdentifier, "com.example.Share-Ext");
    const plist::Dictionary& info = *share.built->infoPlist;
    EXPECT_EQ(text(info, "CFBundleShortVersionString"), "3.0");
    EXPECT_EQ(text(info, "CFBundleIdentifier"), "com.example.Share-Ext");

    const plist::Dictionary& entitlements = *project.targets[0].built->entitlements;
    EXPECT_EQ(firstText(entitlements, "com.apple.security.application-groups"),
              "group.com.example.app");
    EXPECT_EQ(firstText(entitlements, "keychain-access-groups"),
              "ABCDE12345.shared");
    EXPECT_EQ(project.targets[0].entitlementsURL, dir.file("P/App/App.entitlements"));
}

TEST_F(ResolvedSettings, GeneratedInfoPlistKeysComeFromSettings) {
    const ProjectContext project = resolve();
    const plist::Dictionary& info = *project.targets[0].built->infoPlist;
    EXPECT_EQ(text(info, "CFBundleDisplayName"), "APP");
    EXPECT_EQ(text(info, "NSCameraUsageDescription"), "Scans codes");
    EXPECT_EQ(text(info, "CFBundleIdentifier"), "com.example.app");
    EXPECT_EQ(text(info, "CFBundleShortVersionString"), "2.0");
    EXPECT_EQ(info.find("MyCustomKey"), nullptr);
}

TEST_F(ResolvedSettings, MissingFilesMakeDependentValuesUnknownNotEmpty) {
    const ProjectContext project = resolve();
    const auto unknownNames = [](const TargetContext& target) {
        std::vector<std::string> names;
        for (const UnknownSetting& setting : target.built->unknown) {
            names.push_back(setting.name);
        }
        return names;
    };
    // The optional secrets include may set any setting not set above it.
    const std::vector<std::string> appUnknown = unknownNames(project.targets[0]);
    EXPECT_NE(std::find(appUnknown.begin(), appUnknown.end(), "CODE_SIGN_STYLE"), appUnknown.end());
    EXPECT_EQ(std::find(appUnknown.begin(), appUnknown.end(), "PRODUCT_BUNDLE_IDENTIFIER"),
              appUnknown.end());
    EXPECT_EQ(project.targets[0].codeSignStyle, std::nullopt);
    // A CocoaPods configuration never sets identity settings, so those stay
    // known (or unknown for another reason); other settings it may set.
    const TargetContext& podded = project.targets[2];
    EXPECT_EQ(podded.bundleIdentifier, "com.example.podded");
    for (const UnknownSetting& setting : podded.built->unknown) {
        const bool byPods = setting.reason.find("Pods-App") != std::string::npos;
        EXPECT_EQ(byPods, setting.name == "CLANG_MODULES_AUTOLINK") << setting.name;
    }
}

} // namespace
} // namespace kelvane
