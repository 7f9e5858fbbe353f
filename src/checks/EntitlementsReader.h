#pragma once

#include "model/TargetContext.h"
#include "plist/Value.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvane {

// The entitlements of one target, read the way every entitlement check reads
// them. A target that names no file, a file that has gone since the project
// was loaded, and a root that is not a dictionary all mean "no entitlements"
// (an empty dictionary): those are configurations, not faults. A file that
// exists but cannot be read, or whose bytes are no property list, is a fault
// the user must see, so it throws plist::FileReadError or plist::ParseError.
[[nodiscard]] plist::Dictionary readEntitlements(const TargetContext& target);

// Identifier lists (app groups, iCloud containers) may be written as one text
// or as an array of texts, in file order. Any other value, including an array
// holding a non-text, is no list at all.
[[nodiscard]] std::optional<std::vector<std::string>> identifierList(const plist::Value& value);

} // namespace kelvane
