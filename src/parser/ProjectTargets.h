#pragma once

#include "model/TargetContext.h"
#include "plist/Value.h"

#include <string>
#include <vector>

namespace kelvane {

// The native targets of a project file's root dictionary, in the order their
// objects appear in the file. `projectURL` is the .xcodeproj location that file
// paths in build settings are resolved against. Throws ParserError
// (failedToParseTargets) when there is no object table; anything malformed
// inside the table is skipped.
[[nodiscard]] std::vector<TargetContext> parseTargets(const plist::Dictionary& root,
                                                      const std::string& projectURL);

// The frameworks a target's link phases name by path, in phase order.
[[nodiscard]] std::vector<std::string> linkedFrameworks(const plist::Dictionary& target,
                                                      const plist::Dictionary& objects);

} // namespace kelvane
