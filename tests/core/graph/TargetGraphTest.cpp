#include "ProjectFiles.h"
#include "TempDir.h"
#include "graph/AsBuiltProject.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kelvane {
namespace {

using testing::pbxproj;
using testing::TempDir;

// A project shaped like the ones real teams keep: objects sorted by id so
// that a watch app and a macOS helper come before the iOS app, while the
// project's own `targets` list has the developer's order.
const std::string kObjects = R"pbx(
    ROOT = {isa = PBXProject; buildConfigurationList = PL; mainGroup = G;
            targets = (APP, WIDGET, WATCH, OLDWATCH, OLDWATCHEXT, KIT, TESTS, UITESTS, VARIANT,
                       MAC, HELPER, LIB, TOOL, CLIP); };
    G = {isa = PBXGroup; children = (); sourceTree = "<group>"; };
    PL = {isa = XCConfigurationList; buildConfigurations = (PD, PR); defaultConfigurationName = Release; };
    PD = {isa = XCBuildConfiguration; name = Debug; buildSettings = {SDKROOT = iphoneos; }; };
    PR = {isa = XCBuildConfiguration; name = Release; buildSettings = {SDKROOT = iphoneos; }; };

    APP = {isa = PBXNativeTarget; name = App; productType = "com.apple.product-type.application";
           productReference = APP_P; buildPhases = (EMBED_EXT, EMBED_WATCH, EMBED_FW, EMBED_CLIP);
           buildConfigurationList = L_APP; };
    EMBED_EXT = {isa = PBXCopyFilesBuildPhase; dstSubfolderSpec = 13; dstPath = ""; files = (B_WIDGET); };
    EMBED_WATCH = {isa = PBXCopyFilesBuildPhase; dstSubfolderSpec = 16;
                   dstPath = "$(CONTENTS_FOLDER_PATH)/Watch"; files = (B_WATCH); };
    EMBED_FW = {isa = PBXCopyFilesBuildPhase; dstSubfolderSpec = 10; dstPath = ""; files = (B_KIT); };
    EMBED_CLIP = {isa = PBXCopyFilesBuildPhase; dstSubfolderSpec = 16;
                  dstPath = "$(CONTENTS_FOLDER_PATH)/AppClips"; files = (B_CLIP); };
    B_WIDGET = {isa = PBXBuildFile; fileRef = WIDGET_P; };
    B_WATCH = {isa = PBXBuildFile; fileRef = WATCH_P; };
    B_KIT = {isa = PBXBuildFile; fileRef = KIT_P; };
    B_CLIP = {isa = PBXBuildFile; fileRef = CLIP_P; };

    WIDGET = {isa = PBXNativeTarget; name = Widget; productType = "com.apple.product-type.app-extension";
              productReference = WIDGET_P; buildConfigurationList = L_WIDGET; };
    WATCH = {isa = PBXNativeTarget; name = "App Watch"; productType = "com.apple.product-type.application";
             productReference = WATCH_P; buildConfigurationList = L_WATCH; };
    OLDWATCH = {isa = PBXNativeTarget; name = Legacy; productType = "com.apple.product-type.application.watchapp2";
                productReference = OLDWATCH_P; buildPhases = (EMBED_OLDEXT); buildConfigurationList = L_WATCH; };
    EMBED_OLDEXT = {isa = PBXCopyFilesBuildPhase; dstSubfolderSpec = 13; files = (B_OLDEXT); };
    B_OLDEXT = {isa = PBXBuildFile; fileRef = OLDWATCHEXT_P; };
    OLDWATCHEXT = {isa = PBXNativeTarget; name = LegacyExt; productType = "com.apple.product-type.watchkit2-extension";
                   productReference = OLDWATCHEXT_P; buildConfigurationList = L_WATCH; };
    KIT = {isa = PBXNativeTarget; name = Kit; productType = "com.apple.product-type.framework";
           productReference = KIT_P; buildConfigurationList = L_EMPTY; };
    TESTS = {isa = PBXNativeTarget; name = AppTests; productType = "com.apple.product-type.bundle.unit-test";
             buildConfigurationList = L_TESTS; };
    UITESTS = {isa = PBXNativeTarget; name = AppUITests; productType = "com.apple.product-type.bundle.ui-testing";
               buildConfigurationList = L_UITESTS; };
    VARIANT = {isa = PBXNativeTarget; name = "App Enterprise"; productType = "com.apple.product-type.application";
               buildConfigurationList = L_EMPTY; };
    MAC = {isa = PBXNativeTarget; name = "App Mac"; productType = "com.apple.product-type.application";
           buildPhases = (EMBED_HELPER); buildConfigurationList = L_MAC; };
    EMBED_HELPER = {isa = PBXCopyFilesBuildPhase; dstSubfolderSpec = 1;
                    dstPath = "Contents/Library/LoginItems"; files = (B_HELPER); };
    B_HELPER = {isa = PBXBuildFile; fileRef = HELPER_P; };
    HELPER = {isa = PBXNativeTarget; name = "Launcher"; productType = "com.apple.product-type.application";
              productReference = HELPER_P; buildConfigurationList = L_MAC; };
    LIB = {isa = PBXNativeTarget; name = Core; productType = "com.apple.product-type.library.static";
           buildConfigurationList = L_EMPTY; };
    TOOL = {isa = PBXNativeTarget; name = gen; productType = "com.apple.product-type.tool";
            buildConfigurationList = L_MAC; };
    CLIP = {isa = PBXNativeTarget; name = Clip; productType = "com.apple.product-type.application.on-demand-install-capable";
            productReference = CLIP_P; buildConfigurationList = L_EMPTY; };

    L_APP = {isa = XCConfigurationList; buildConfigurations = (APP_R); };
    APP_R = {isa = XCBuildConfiguration; name = Release; buildSettings = {PRODUCT_NAME = "$(TARGET_NAME)"; }; };
    L_WIDGET = {isa = XCConfigurationList; buildConfigurations = (WIDGET_R); };
    WIDGET_R = {isa = XCBuildConfiguration; name = Release; buildSettings = {INFOPLIST_FILE = Widget/Info.plist; }; };
    L_WATCH = {isa = XCConfigurationList; buildConfigurations = (WATCH_R); };
    WATCH_R = {isa = XCBuildConfiguration; name = Release; buildSettings = {SDKROOT = watchos; }; };
    L_MAC = {isa = XCConfigurationList; buildConfigurations = (MAC_R); };
    MAC_R = {isa = XCBuildConfiguration; name = Release; buildSettings = {SDKROOT = macosx; }; };
    L_TESTS = {isa = XCConfigurationList; buildConfigurations = (TESTS_R); };
    TESTS_R = {isa = XCBuildConfiguration; name = Release; buildSettings = {
               TEST_HOST = "$(BUILT_PRODUCTS_DIR)/App.app/$(BUNDLE_EXECUTABLE_FOLDER_PATH)/App";
               BUNDLE_LOADER = "$(TEST_HOST)"; }; };
    L_UITESTS = {isa = XCConfigurationList; buildConfigurations = (UITESTS_R); };
    UITESTS_R = {isa = XCBuildConfiguration; name = Release; buildSettings = {TEST_TARGET_NAME = App; }; };
    L_EMPTY = {isa = XCConfigurationList; buildConfigurations = (EMPTY_R); };
    EMPTY_R = {isa = XCBuildConfiguration; name = Release; buildSettings = {}; };
)pbx";

const std::string kWidgetInfo = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>NSExtension</key><dict>
<key>NSExtensionPointIdentifier</key><string>com.apple.widgetkit-extension</string>
</dict></dict></plist>)";

struct Expected {
    std::string name;
    TargetType type;
    Platform platform;
    TargetRole role;
    std::optional<std::string> host;
    bool mainApp;
};

TEST(TargetGraph, TypesPlatformsRolesHostsAndMainAppsFollowHowTheProjectShips) {
    TempDir dir;
    dir.write("P/P.xcodeproj/project.pbxproj", pbxproj(kObjects));
    dir.write("P/Widget/Info.plist", kWidgetInfo);
    const ProjectContext project =
        AsBuiltProject::load(dir.file("P/P.xcodeproj")).resolve(std::nullopt);

    const std::vector<Expected> expected{
        {"App", TargetType::application, Platform::iOS, TargetRole::app, std::nullopt, true},
        {"Widget", TargetType::widgetExtension, Platform::iOS, TargetRole::embedded, "App", false},
        {"App Watch", TargetType::watchApp, Platform::watchOS, TargetRole::embedded, "App", false},
        {"Legacy", TargetType::watchApp, Platform::watchOS, TargetRole::app, std::nullopt, true},
        {"LegacyExt", TargetType::watchExtension, Platform::watchOS, TargetRole::embedded, "Legacy", false},
        {"Kit", TargetType::framework, Platform::iOS, TargetRole::embedded, "App", false},
        {"AppTests", TargetType::unitTestBundle, Platform::iOS, TargetRole::testBundle, "App", false},
        {"AppUITests", TargetType::uiTestBundle, Platform::iOS, TargetRole::testBundle, "App", false},
        {"App Enterprise", TargetType::application, Platform::iOS, TargetRole::app, std::nullopt, false},
        {"App Mac", TargetType::application, Platform::macOS, TargetRole::app, std::nullopt, true},
        {"Launcher", TargetType::application, Platform::macOS, TargetRole::embedded, "App Mac", false},
        {"Core", TargetType::staticLibrary, Platform::iOS, TargetRole::library, std::nullopt, false},
        {"gen", TargetType::unknown, Platform::macOS, TargetRole::tool, std::nullopt, false},
        {"Clip", TargetType::appClip, Platform::iOS, TargetRole::embedded, "App", false},
    };
    ASSERT_EQ(project.targets.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const TargetContext& target = project.targets[i];
        SCOPED_TRACE(expected[i].name);
        EXPECT_EQ(target.name, expected[i].name);
        EXPECT_EQ(target.type, expected[i].type);
        EXPECT_EQ(target.built->platform, expected[i].platform);
        EXPECT_EQ(target.built->role, expected[i].role);
        EXPECT_EQ(target.built->host, expected[i].host);
        EXPECT_EQ(target.built->mainApp, expected[i].mainApp);
    }
    EXPECT_EQ(project.targets[0].built->embeds,
              (std::vector<std::string>{"Widget", "App Watch", "Kit", "Clip"}));
    // The iOS app, not the watch or Mac app, is the one a developer means.
    ASSERT_NE(project.mainAppTarget(), nullptr);
    EXPECT_EQ(project.mainAppTarget()->name, "App");
    EXPECT_EQ(project.configuration, "Release");
}

} // namespace
} // namespace kelvane
