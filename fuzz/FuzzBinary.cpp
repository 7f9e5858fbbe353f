// Any bytes given to the binary reader either read or fail with ParseError.
#include "plist/BinaryReader.h"
#include "plist/ParseError.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        (void)kelvane::plist::readBinary(bytes, "fuzz", {});
    } catch (const kelvane::plist::ParseError&) {
    }
    return 0;
}
