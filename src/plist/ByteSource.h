#pragma once

#include "plist/PropertyListReader.h"

#include <cstddef>
#include <string>

namespace kelvane::plist {

// Bytes that arrive in pieces, such as a file read a block at a time, so that
// a large project's text need not be held whole while its values are built.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    // Up to `size` bytes into `buffer`; returns 0 only at the end.
    virtual std::size_t read(char* buffer, std::size_t size) = 0;
};

// readPropertyList for bytes that start with `head` and go on in `rest`.
// The text forms are read as the bytes arrive; the binary form, which is
// read by offsets, is gathered whole first.
[[nodiscard]] Value readPropertyList(std::string head, ByteSource& rest, const std::string& source,
                                     const ReadLimits& limits, KeyPositions* positions = nullptr);

} // namespace kelvane::plist
