#pragma once

#include "plist/PropertyListReader.h"

namespace kelvane::plist {

// Reads the old-style text form, recording key positions where `positions`
// is given. Throws ParseError.
[[nodiscard]] Value readOldStyle(std::string_view bytes, const std::string& source,
                                 const ReadLimits& limits, KeyPositions* positions = nullptr);

class ByteSource;

// The same for text that starts with `head` and goes on in `rest`, read a
// block at a time: memory holds the values and one block, not the text.
[[nodiscard]] Value readOldStyle(std::string head, ByteSource& rest, const std::string& source,
                                 const ReadLimits& limits, KeyPositions* positions = nullptr);

} // namespace kelvane::plist
