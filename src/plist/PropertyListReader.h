#pragma once

#include "plist/KeyPositions.h"
#include "plist/Value.h"

#include <string>
#include <string_view>

namespace kelvane::plist {

// Limits that keep hostile input from exhausting the stack or memory.
struct ReadLimits {
    std::size_t maxDepth = 512;
    // Values one document may expand to. In the binary form one object can be
    // referenced from many places; in the text forms a value costs a few bytes
    // of input and some fifty of memory. A generated 50 MB project holds about
    // 1.1 million values, so this leaves ample room while capping memory near
    // half a gigabyte.
    std::size_t maxValues = 10'000'000;
};

// Reads a property list in any of its three forms, detected from the bytes:
// binary ("bplist00"), XML (begins, after blanks, with "<?xml", "<!DOCTYPE",
// "<plist" or "<!--"), otherwise the old-style text form of project.pbxproj.
// `source` names the bytes in error messages (usually the file path).
// Where `positions` is given, the text forms record where its wanted keys
// stand; reading without it costs nothing extra. Throws ParseError.
[[nodiscard]] Value readPropertyList(std::string_view bytes, const std::string& source,
                                     const ReadLimits& limits = {},
                                     KeyPositions* positions = nullptr);

// Reads a whole regular file. Throws FileReadError; a path that names a
// folder, a FIFO or a device fails instead of blocking.
[[nodiscard]] std::string readFile(const std::string& path);

// readFile followed by readPropertyList with the path as source.
[[nodiscard]] Value readPropertyListFile(const std::string& path, const ReadLimits& limits = {},
                                         KeyPositions* positions = nullptr);

} // namespace kelvane::plist
