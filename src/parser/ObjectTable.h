#pragma once

#include "plist/Value.h"

#include <string>
#include <string_view>

namespace kelvane {

// Lookups in the object table of project.pbxproj, shared by every reader of
// it. Anything malformed reads as absent, never as a fault.

// The object with that id, if it is a dictionary; nullptr for a null id.
[[nodiscard]] const plist::Dictionary* findObject(const plist::Dictionary& objects,
                                                  const std::string* id);

// A list counts only when every element is text; one stray number makes the
// whole entry unusable, as if it were missing.
[[nodiscard]] const plist::Array* findTextList(const plist::Dictionary& dictionary,
                                               std::string_view key);

// The object's `isa`, or an empty view.
[[nodiscard]] std::string_view isaOf(const plist::Dictionary& object);

} // namespace kelvane
