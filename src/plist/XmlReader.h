#pragma once

#include "plist/PropertyListReader.h"

namespace kelvane::plist {

// Reads the XML form. Throws ParseError.
[[nodiscard]] Value readXml(std::string_view bytes, const std::string& source,
                            const ReadLimits& limits);

} // namespace kelvane::plist
