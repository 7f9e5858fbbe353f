#pragma once

#include "model/SettingOrigin.h"
#include "plist/Value.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// The platform a target builds for, from the SDK its settings name.
enum class Platform { iOS, macOS, watchOS, tvOS, visionOS, driverKit, unknown };

// What a target is for, which decides what it is compared with: an app is
// shipped on its own; embedded content (extensions, widgets, watch apps, App
// Clips, embedded frameworks) ships inside its host; a test bundle runs in
// its host; libraries and tools never ship as apps.
enum class TargetRole { app, embedded, testBundle, library, tool, other };

[[nodiscard]] std::string_view platformName(Platform platform) noexcept;
[[nodiscard]] std::string_view roleName(TargetRole role) noexcept;

// A resolved setting with where it was set.
struct TracedValue {
    std::string value;
    SettingOrigin origin;
    friend bool operator==(const TracedValue&, const TracedValue&) = default;
};

// A setting whose value cannot be known from the files at hand.
struct UnknownSetting {
    std::string name;
    std::string reason;
    friend bool operator==(const UnknownSetting&, const UnknownSetting&) = default;
};

// What the as-built reading knows of a target beyond the fields both readings
// share: one configuration, resolved as Xcode resolves it.
struct BuiltFacts {
    // The .xcodeproj the target belongs to (a workspace loads several).
    std::string project;
    std::string configuration;
    // As Xcode writes it, e.g. "com.apple.product-type.app-extension".
    std::string productType;
    Platform platform = Platform::unknown;
    TargetRole role = TargetRole::other;
    // The app of its platform a developer means when they say "the app".
    bool mainApp = false;
    // The target that embeds this one, or the test bundle's host.
    std::optional<std::string> host;
    // Targets whose products this one copies into its bundle, in phase order.
    std::vector<std::string> embeds;
    // Capabilities the project's target attributes record (the legacy
    // `SystemCapabilities`), by name, with whether each is enabled.
    std::map<std::string, bool, std::less<>> systemCapabilities;
    // The settings Kelvane resolved, by name, each with its origin.
    std::map<std::string, TracedValue, std::less<>> settings;
    std::vector<UnknownSetting> unknown;
    // Set when a file the repository lacks could add INFOPLIST_KEY_ settings
    // no one assigned here, so an absent generated key is not proof of
    // absence: the reason why.
    std::optional<std::string> generatedKeysUnknown;
    // The Info.plist and entitlements as the build writes them: references
    // expanded, generated keys merged. Absent when the target has none; the
    // error text when the file could not be read.
    std::optional<plist::Dictionary> infoPlist;
    std::optional<plist::Dictionary> entitlements;
    std::optional<std::string> infoPlistError;
    std::optional<std::string> entitlementsError;

    // The resolved value of a setting; nullptr when it is unset or unknown.
    [[nodiscard]] const TracedValue* setting(std::string_view name) const;

    friend bool operator==(const BuiltFacts&, const BuiltFacts&) = default;
};

} // namespace kelvane
