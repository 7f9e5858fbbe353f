#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelvane {

// Entitlement key to the display name of the Xcode capability that provides
// it. A list rather than a hash map: the lines of one target follow the order
// of its entries.
using EntitlementCapabilityMap = std::vector<std::pair<std::string, std::string>>;

// Reminds the user to verify the capabilities behind entitlements that only
// work with one. It sees the entitlement only, never the capability setting,
// so at worst it warns.
struct EntitlementWithoutCapabilityCheck {
    EntitlementCapabilityMap entitlementToCapability;

    [[nodiscard]] std::string id() const { return "entitlement.without.capability"; }
    // Throws when an existing entitlements file cannot be read or parsed.
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;

    friend bool operator==(const EntitlementWithoutCapabilityCheck&,
                           const EntitlementWithoutCapabilityCheck&) = default;
};

} // namespace kelvane
