#include "graph/TargetKind.h"

#include <array>
#include <utility>

namespace kelvane {

namespace {

using namespace std::string_view_literals;

struct PlatformNames {
    Platform platform;
    std::string_view sdkPrefix;      // SDKROOT name
    std::string_view pathComponent;  // inside an SDK path
    std::string_view deviceSDK;
    std::string_view deploymentKey;
};

// Simulator SDKs share their device platform's settings; they are listed
// after it so the longer names are tried first.
constexpr std::array kPlatforms{
    PlatformNames{Platform::iOS, "iphonesimulator"sv, "iPhoneSimulator"sv, "iphoneos18.0"sv,
                  "IPHONEOS_DEPLOYMENT_TARGET"sv},
    PlatformNames{Platform::iOS, "iphoneos"sv, "iPhoneOS"sv, "iphoneos18.0"sv,
                  "IPHONEOS_DEPLOYMENT_TARGET"sv},
    PlatformNames{Platform::macOS, "macosx"sv, "MacOSX"sv, "macosx15.0"sv,
                  "MACOSX_DEPLOYMENT_TARGET"sv},
    PlatformNames{Platform::watchOS, "watchsimulator"sv, "WatchSimulator"sv, "watchos11.0"sv,
                  "WATCHOS_DEPLOYMENT_TARGET"sv},
    PlatformNames{Platform::watchOS, "watchos"sv, "WatchOS"sv, "watchos11.0"sv,
                  "WATCHOS_DEPLOYMENT_TARGET"sv},
    PlatformNames{Platform::tvOS, "appletvsimulator"sv, "AppleTVSimulator"sv, "appletvos18.0"sv,
                  "TVOS_DEPLOYMENT_TARGET"sv},
    PlatformNames{Platform::tvOS, "appletvos"sv, "AppleTVOS"sv, "appletvos18.0"sv,
                  "TVOS_DEPLOYMENT_TARGET"sv},
    PlatformNames{Platform::visionOS, "xrsimulator"sv, "XRSimulator"sv, "xros2.0"sv,
                  "XROS_DEPLOYMENT_TARGET"sv},
    PlatformNames{Platform::visionOS, "xros"sv, "XROS"sv, "xros2.0"sv, "XROS_DEPLOYMENT_TARGET"sv},
    PlatformNames{Platform::driverKit, "driverkit"sv, "DriverKit"sv, "driverkit24.0"sv,
                  "DRIVERKIT_DEPLOYMENT_TARGET"sv},
};

const PlatformNames* namesOf(Platform platform) {
    for (const auto& names : kPlatforms) {
        if (names.platform == platform && !names.sdkPrefix.ends_with("simulator")) {
            return &names;
        }
    }
    return nullptr;
}

Platform platformOfName(std::string_view name) {
    for (const auto& names : kPlatforms) {
        if (name.starts_with(names.sdkPrefix)) {
            return names.platform;
        }
    }
    return Platform::unknown;
}

} // namespace

Platform platformOfSDK(std::string_view sdkRoot, std::string_view supportedPlatforms) {
    if (sdkRoot.find('/') != std::string_view::npos) {
        // An SDK path: ".../Platforms/iPhoneOS.platform/.../iPhoneOS18.0.sdk".
        const std::size_t slash = sdkRoot.rfind('/', sdkRoot.size() - 2);
        const std::string_view last = sdkRoot.substr(slash == std::string_view::npos ? 0 : slash + 1);
        for (const auto& names : kPlatforms) {
            if (last.starts_with(names.pathComponent)) {
                return names.platform;
            }
        }
        return Platform::unknown;
    }
    if (sdkRoot.empty() || sdkRoot == "auto") {
        // Multiplatform targets: the first platform they support decides.
        const std::size_t start = supportedPlatforms.find_first_not_of(" \t");
        if (start == std::string_view::npos) {
            return sdkRoot.empty() ? Platform::macOS : Platform::unknown;
        }
        const std::size_t end = supportedPlatforms.find_first_of(" \t", start);
        return platformOfName(supportedPlatforms.substr(start, end - start));
    }
    return platformOfName(sdkRoot);
}

std::string_view deviceSDKName(Platform platform) noexcept {
    const PlatformNames* names = namesOf(platform);
    return names ? names->deviceSDK : ""sv;
}

std::string_view platformSettingName(Platform platform) noexcept {
    const PlatformNames* names = namesOf(platform);
    return names ? names->sdkPrefix : ""sv;
}

std::string_view deploymentTargetSetting(Platform platform) noexcept {
    const PlatformNames* names = namesOf(platform);
    return names ? names->deploymentKey : ""sv;
}

TargetType builtTargetType(std::string_view productType, Platform platform,
                           const plist::Dictionary* infoPlist) {
    constexpr std::string_view prefix = "com.apple.product-type.";
    const std::string_view kind =
        productType.starts_with(prefix) ? productType.substr(prefix.size()) : productType;
    if (kind == "application" || kind == "application.messages") {
        return platform == Platform::watchOS ? TargetType::watchApp : TargetType::application;
    }
    if (kind == "application.watchapp2" || kind == "application.watchapp" ||
        kind == "watchkit2-app") {
        return TargetType::watchApp;
    }
    if (kind == "application.watchapp2-container") {
        return TargetType::application;
    }
    if (kind == "watchkit2-extension" || kind == "watchkit-extension") {
        return TargetType::watchExtension;
    }
    if (kind == "app-extension.widgetkit-extension") {
        return TargetType::widgetExtension;
    }
    if (kind == "app-extension.messages" || kind == "app-extension.messages-sticker-pack") {
        return TargetType::messagesExtension;
    }
    if (kind == "app-extension" || kind == "extensionkit-extension" || kind == "tv-app-extension") {
        // A widget is an app extension whose Info.plist names WidgetKit's
        // extension point; Xcode has not written the widget product type for
        // years.
        const plist::Dictionary* extension =
            infoPlist ? plist::findDictionary(*infoPlist, "NSExtension") : nullptr;
        const std::string* point =
            extension ? plist::findString(*extension, "NSExtensionPointIdentifier") : nullptr;
        if (point != nullptr && *point == "com.apple.widgetkit-extension") {
            return TargetType::widgetExtension;
        }
        return TargetType::appExtension;
    }
    if (kind == "application.on-demand-install-capable") {
        return TargetType::appClip;
    }
    if (kind == "framework" || kind == "framework.static") {
        return TargetType::framework;
    }
    if (kind == "library.static") {
        return TargetType::staticLibrary;
    }
    if (kind == "bundle.unit-test") {
        return TargetType::unitTestBundle;
    }
    if (kind == "bundle.ui-testing") {
        return TargetType::uiTestBundle;
    }
    return TargetType::unknown;
}

TargetRole intrinsicRole(std::string_view productType) {
    constexpr std::string_view prefix = "com.apple.product-type.";
    const std::string_view kind =
        productType.starts_with(prefix) ? productType.substr(prefix.size()) : productType;
    if (kind.starts_with("application")) {
        return TargetRole::app;
    }
    if (kind.starts_with("bundle.unit-test") || kind.starts_with("bundle.ui-testing")) {
        return TargetRole::testBundle;
    }
    if (kind.find("extension") != std::string_view::npos || kind == "xpc-service" ||
        kind == "watchkit2-app" || kind == "driver-extension" || kind == "system-extension") {
        return TargetRole::embedded;
    }
    if (kind.starts_with("framework") || kind.starts_with("library") || kind == "bundle" ||
        kind == "xcframework" || kind == "dynamic-library" || kind == "static-library") {
        return TargetRole::library;
    }
    if (kind == "tool") {
        return TargetRole::tool;
    }
    return TargetRole::other;
}

std::string_view wrapperExtension(std::string_view productType) {
    constexpr std::array kExtensions{
        std::pair{"application"sv, "app"sv},          std::pair{"app-extension"sv, "appex"sv},
        std::pair{"watchkit2-extension"sv, "appex"sv}, std::pair{"extensionkit-extension"sv, "appex"sv},
        std::pair{"tv-app-extension"sv, "appex"sv},    std::pair{"framework"sv, "framework"sv},
        std::pair{"bundle.unit-test"sv, "xctest"sv},  std::pair{"bundle.ui-testing"sv, "xctest"sv},
        std::pair{"bundle"sv, "bundle"sv},             std::pair{"xpc-service"sv, "xpc"sv},
        std::pair{"watchkit2-app"sv, "app"sv},
    };
    constexpr std::string_view prefix = "com.apple.product-type.";
    const std::string_view kind =
        productType.starts_with(prefix) ? productType.substr(prefix.size()) : productType;
    for (const auto& [start, extension] : kExtensions) {
        if (kind.starts_with(start)) {
            return extension;
        }
    }
    return ""sv;
}

} // namespace kelvane
