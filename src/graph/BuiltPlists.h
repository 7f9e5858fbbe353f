#pragma once

#include "model/BuiltFacts.h"
#include "settings/SettingsScope.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kelvane {

// A property list as the build writes it into the product.
struct BuiltPlist {
    std::optional<plist::Dictionary> dictionary;
    // Why the file could not be read; the checks that need it report it.
    std::optional<std::string> error;
    // Keys dropped because their value could not be known.
    std::vector<UnknownSetting> unknown;
};

using ExtraValues = std::map<std::string, std::string, std::less<>>;

// The Info.plist: the file's string values expanded in the target's scope
// (with `$(CFBundleIdentifier)` the file's own, itself expanded), then, when
// `generate` is on, the keys Xcode generates from build settings merged over
// it (generated scalars win, arrays are joined, dictionaries merged per key)
// and empty identity keys dropped.
[[nodiscard]] BuiltPlist builtInfoPlist(const std::optional<std::string>& file, bool generate,
                                        const settings::SettingsScope& scope,
                                        const std::vector<std::string>& assignedNames);

// The entitlements: keys and string values expanded in the target's scope
// with `extra` (CFBundleIdentifier, TeamIdentifierPrefix, AppIdentifierPrefix).
[[nodiscard]] BuiltPlist builtEntitlements(const std::optional<std::string>& file,
                                           const settings::SettingsScope& scope,
                                           const ExtraValues& extra);

} // namespace kelvane
