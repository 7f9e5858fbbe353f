#pragma once

#include "model/BuiltFacts.h"
#include "model/TargetType.h"
#include "plist/Value.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvane {

// One native target of a loaded project. In the literal reading, settings are
// those of the target's first build configuration, exactly as written (no
// macro expansion); in the as-built reading they are resolved for one
// configuration and `built` holds the rest of what that reading knows.
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
    std::optional<BuiltFacts> built;

    // One top-level value of the target's Info.plist: none when there is no
    // Info.plist, its root is not a dictionary, or the key is missing.
    // As built, the Info.plist the build writes. Throws plist::FileReadError
    // or plist::ParseError (as built: std::runtime_error with the same text).
    [[nodiscard]] std::optional<plist::Value> infoPlistValue(std::string_view key) const;

    friend bool operator==(const TargetContext&, const TargetContext&) = default;
};

} // namespace kelvane
