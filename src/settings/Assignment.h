#pragma once

#include "model/SettingOrigin.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::settings {

// One `[parameter=pattern]` of a conditional assignment, both taken verbatim.
struct Condition {
    std::string parameter;
    std::string pattern;
    friend bool operator==(const Condition&, const Condition&) = default;
};

// One `NAME[conditions] = value` as Xcode pushes it onto a target's stack of
// settings. The value is the unexpanded expression text.
//
// A placeholder stands for a file Kelvane could not read (a CocoaPods
// configuration or a secrets file the repository does not hold): it has no
// value, and any setting whose evaluation reaches it is unknown for its
// reason. Most placeholders cover every setting; one that `sparesIdentity`
// covers every setting but the identity settings (see isIdentitySetting),
// because the tool that writes that file never sets them; one with a `name`
// covers that setting alone.
struct Assignment {
    std::string name;
    std::vector<Condition> conditions;
    std::string value;
    SettingOrigin origin;
    std::optional<std::string> unknownReason;
    bool sparesIdentity = false;
    // Defined by Xcode itself (TARGET_NAME, SRCROOT, CONFIGURATION…). No file
    // a repository lacks is taken to redefine such a setting, so placeholders
    // never cover it.
    bool builtIn = false;

    [[nodiscard]] bool isPlaceholder() const noexcept { return unknownReason.has_value(); }
    friend bool operator==(const Assignment&, const Assignment&) = default;
};

// Settings that say which bundle a target builds, who signs it and where it
// runs: bundle id, team, signing style and entitlements, Info.plist file and
// generation keys (INFOPLIST_KEY_*), versions, product name, SDK, platforms
// and deployment targets, test host and bundle loader.
[[nodiscard]] bool isIdentitySetting(std::string_view name) noexcept;

} // namespace kelvane::settings
