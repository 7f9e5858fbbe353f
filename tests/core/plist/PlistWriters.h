#pragma once

#include "plist/Value.h"

#include <cstdint>
#include <string>
#include <vector>

// Writers used only by the tests: to craft binary files byte by byte, and to
// write a value back out in the other two forms for round trips.
namespace kelvane::plist::testing {

// Big-endian unsigned integer of `size` bytes.
[[nodiscard]] std::string bigEndian(std::uint64_t value, unsigned size);

// One object's marker byte followed by its length as the format writes it
// (in the low nibble, or as a following integer object past 14).
[[nodiscard]] std::string marker(std::uint8_t type, std::uint64_t count);

// Header, the given encoded objects, the offset table and the trailer.
[[nodiscard]] std::string assembleBinary(const std::vector<std::string>& objects,
                                         std::uint64_t top = 0, unsigned refSize = 1);

// Every value as its own object (no sharing), references of 4 bytes.
[[nodiscard]] std::string writeBinary(const Value& value);

[[nodiscard]] std::string writeXml(const Value& value);

} // namespace kelvane::plist::testing
