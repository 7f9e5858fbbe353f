#pragma once

#include "plist/PropertyListReader.h"

namespace kelvane::plist {

// Reads the binary form. Throws ParseError.
[[nodiscard]] Value readBinary(std::string_view bytes, const std::string& source,
                               const ReadLimits& limits);

} // namespace kelvane::plist
