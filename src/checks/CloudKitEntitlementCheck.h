#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// Checks that the main app's iCloud containers include "iCloud." + its bundle
// identifier, the container CloudKit uses by convention. Returns no issue
// when the project gives it nothing to compare.
struct CloudKitEntitlementCheck {
    std::string checkID;
    // The entitlement that lists the iCloud containers.
    std::string containerKey;

    [[nodiscard]] std::string id() const { return checkID; }
    // Throws when an existing entitlements file cannot be read or parsed.
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;

    friend bool operator==(const CloudKitEntitlementCheck&,
                           const CloudKitEntitlementCheck&) = default;
};

} // namespace kelvane
