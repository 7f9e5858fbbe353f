#pragma once

#include "diagnostics/EntitlementValue.h"
#include "diagnostics/RecordHash.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kelvane {

// What one fix step would change. Each payload carries its case name as
// `kind`, the text machine-readable output uses.

struct UpdatePlistKey {
    static constexpr std::string_view kind = "updatePlistKey";
    std::string targetName{};
    std::string fileName{};
    std::string key{};
    std::string newValue{};
    friend bool operator==(const UpdatePlistKey&, const UpdatePlistKey&) = default;
};

struct SetBuildSetting {
    static constexpr std::string_view kind = "setBuildSetting";
    // Absent: the setting belongs to the project, not to one target.
    std::optional<std::string> targetName{};
    std::string configName{};
    std::string settingName{};
    std::string value{};
    friend bool operator==(const SetBuildSetting&, const SetBuildSetting&) = default;
};

struct UpdateEntitlement {
    static constexpr std::string_view kind = "updateEntitlement";
    std::string targetName{};
    std::string fileName{};
    std::string key{};
    EntitlementValue newValue{};
    friend bool operator==(const UpdateEntitlement&, const UpdateEntitlement&) = default;
};

struct UpdateSchemeSetting {
    static constexpr std::string_view kind = "updateSchemeSetting";
    std::string schemeName{};
    std::string buildConfiguration{};
    friend bool operator==(const UpdateSchemeSetting&, const UpdateSchemeSetting&) = default;
};

struct AddFrameworkReference {
    static constexpr std::string_view kind = "addFrameworkReference";
    std::string targetName{};
    std::string frameworkName{};
    friend bool operator==(const AddFrameworkReference&, const AddFrameworkReference&) = default;
};

struct ManualInstruction {
    static constexpr std::string_view kind = "manualInstruction";
    std::vector<std::string> steps{};
    friend bool operator==(const ManualInstruction&, const ManualInstruction&) = default;
};

// The variant index is the case index that hashing starts from.
using FixAction = std::variant<UpdatePlistKey, SetBuildSetting, UpdateEntitlement,
                               UpdateSchemeSetting, AddFrameworkReference, ManualInstruction>;

// The case name, e.g. "setBuildSetting".
[[nodiscard]] std::string_view caseName(const FixAction& action) noexcept;

[[nodiscard]] std::size_t hashValue(const FixAction& action) noexcept;

} // namespace kelvane
