#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>

namespace kelvane {

// Checks that the Watch app's Info.plist names the iOS app's bundle
// identifier as its companion (WKCompanionAppBundleIdentifier).
struct WatchCompanionMismatchCheck {
    std::string checkID;

    [[nodiscard]] std::string id() const { return checkID; }
    // Throws plist::FileReadError or plist::ParseError when the Watch app's
    // Info.plist cannot be read or parsed.
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const;

    friend bool operator==(const WatchCompanionMismatchCheck&,
                           const WatchCompanionMismatchCheck&) = default;
};

} // namespace kelvane
