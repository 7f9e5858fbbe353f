#pragma once

#include "model/BuiltFacts.h"
#include "model/TargetType.h"
#include "plist/Value.h"

#include <string>
#include <string_view>

namespace kelvane {

// The platform an SDKROOT names (a name with or without version, or an SDK
// path); `supportedPlatforms` decides when SDKROOT is "auto" or empty.
[[nodiscard]] Platform platformOfSDK(std::string_view sdkRoot, std::string_view supportedPlatforms);

// The name the `sdk` condition parameter is matched against while a target
// of that platform builds for a device: the SDK's canonical name with a
// version, as Xcode binds it (so `[sdk=iphoneos*]` matches, `[sdk=iphoneos]`
// does not).
[[nodiscard]] std::string_view deviceSDKName(Platform platform) noexcept;
// PLATFORM_NAME of a device build ("iphoneos").
[[nodiscard]] std::string_view platformSettingName(Platform platform) noexcept;
// The platform's own deployment-target setting.
[[nodiscard]] std::string_view deploymentTargetSetting(Platform platform) noexcept;

// What a target builds, by the rules real projects follow: product types as
// Xcode writes them, watch apps that are plain applications on watchOS, and
// widgets that are app extensions by their extension point.
[[nodiscard]] TargetType builtTargetType(std::string_view productType, Platform platform,
                                         const plist::Dictionary* infoPlist);

// The role a product type implies before embedding is known: `embedded`
// for what can only ship inside another bundle, `app` for applications.
[[nodiscard]] TargetRole intrinsicRole(std::string_view productType);

// The extension of the bundle a product type builds ("app", "appex"…).
[[nodiscard]] std::string_view wrapperExtension(std::string_view productType);

} // namespace kelvane
