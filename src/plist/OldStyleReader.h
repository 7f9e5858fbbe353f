#pragma once

#include "plist/PropertyListReader.h"

namespace kelvane::plist {

// Reads the old-style text form. Throws ParseError.
[[nodiscard]] Value readOldStyle(std::string_view bytes, const std::string& source,
                                 const ReadLimits& limits);

} // namespace kelvane::plist
