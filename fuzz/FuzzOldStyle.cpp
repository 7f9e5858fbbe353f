// Any bytes given to the old-style text reader either read or fail with ParseError.
#include "plist/OldStyleReader.h"
#include "plist/ParseError.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        (void)kelvane::plist::readOldStyle(bytes, "fuzz", {});
    } catch (const kelvane::plist::ParseError&) {
    }
    return 0;
}
