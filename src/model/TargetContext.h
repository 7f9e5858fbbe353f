#pragma once

#include "model/TargetType.h"
#include "plist/Value.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvane {

// One native target of a loaded project. Settings are those of the target's
// first build configuration, exactly as written (no macro expansion).
struct TargetContext {
    std::string name;
    TargetType type = TargetType::unknown;
    // Paths joined lexically from the folder that holds the .xcodeproj; set
    // only when something exists there.
    std::optional<std::string> infoPlistURL;
    std::optional<std::string> entitlementsURL;
    std::optional<std::string> bundleIdentifier;
    std::vector<std::string> linkedFrameworks;
    std::optional<std::string> developmentTeam;
    std::optional<std::string> codeSignStyle;
    std::optional<std::string> deploymentTarget;

    // One top-level value of the target's Info.plist: none when there is no
    // Info.plist, its root is not a dictionary, or the key is missing.
    // Throws plist::FileReadError or plist::ParseError.
    [[nodiscard]] std::optional<plist::Value> infoPlistValue(std::string_view key) const;

    friend bool operator==(const TargetContext&, const TargetContext&) = default;
};

} // namespace kelvane
