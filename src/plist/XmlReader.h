#pragma once

#include "plist/PropertyListReader.h"

namespace kelvane::plist {

// Reads the XML form, recording key positions where `positions` is given.
// Throws ParseError.
[[nodiscard]] Value readXml(std::string_view bytes, const std::string& source,
                            const ReadLimits& limits, KeyPositions* positions = nullptr);

class ByteSource;

// The same for a document that starts with `head` and goes on in `rest`.
[[nodiscard]] Value readXml(std::string_view head, ByteSource& rest, const std::string& source,
                            const ReadLimits& limits, KeyPositions* positions = nullptr);

} // namespace kelvane::plist
