#pragma once

#include "diagnostics/RecordHash.h"
#include "model/SettingOrigin.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

namespace kelvane {

// Where a check read a fact. Each payload carries its case name as `kind`,
// the text machine-readable output uses.

struct PlistSource {
    static constexpr std::string_view kind = "plist";
    std::string targetName{};
    std::string fileName{};
    friend bool operator==(const PlistSource&, const PlistSource&) = default;
};

struct EntitlementsSource {
    static constexpr std::string_view kind = "entitlements";
    std::string targetName{};
    std::string fileName{};
    friend bool operator==(const EntitlementsSource&, const EntitlementsSource&) = default;
};

struct BuildSettingSource {
    static constexpr std::string_view kind = "buildSetting";
    std::string targetName{};
    std::string configName{};
    friend bool operator==(const BuildSettingSource&, const BuildSettingSource&) = default;
};

struct SchemeSource {
    static constexpr std::string_view kind = "scheme";
    std::string schemeName{};
    friend bool operator==(const SchemeSource&, const SchemeSource&) = default;
};

struct ProjectSettingSource {
    static constexpr std::string_view kind = "projectSetting";
    std::string configName{};
    friend bool operator==(const ProjectSettingSource&, const ProjectSettingSource&) = default;
};

struct CapabilitySource {
    static constexpr std::string_view kind = "capability";
    std::string targetName{};
    std::string capabilityName{};
    friend bool operator==(const CapabilitySource&, const CapabilitySource&) = default;
};

struct FrameworkReferenceSource {
    static constexpr std::string_view kind = "frameworkReference";
    std::string targetName{};
    friend bool operator==(const FrameworkReferenceSource&,
                           const FrameworkReferenceSource&) = default;
};

struct WatchKitExtensionSource {
    static constexpr std::string_view kind = "watchKitExtension";
    std::string targetName{};
    friend bool operator==(const WatchKitExtensionSource&,
                           const WatchKitExtensionSource&) = default;
};

// The variant index is the case index that hashing starts from.
using EvidenceSource = std::variant<PlistSource, EntitlementsSource, BuildSettingSource,
                                    SchemeSource, ProjectSettingSource, CapabilitySource,
                                    FrameworkReferenceSource, WatchKitExtensionSource>;

// The source as people read it, e.g. "App → Build Settings (Debug)". Payload
// texts go in verbatim.
[[nodiscard]] std::string locationDescription(const EvidenceSource& source);

// Where an as-built value was set, as people read it: "Config/App.xcconfig:12",
// "App.xcodeproj/project.pbxproj (target (Release))", "built-in".
[[nodiscard]] std::string originDescription(const SettingOrigin& origin);

// The case name, e.g. "buildSetting".
[[nodiscard]] std::string_view caseName(const EvidenceSource& source) noexcept;

[[nodiscard]] std::size_t hashValue(const EvidenceSource& source) noexcept;

} // namespace kelvane
