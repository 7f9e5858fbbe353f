#include "parser/Utf8.h"

#include <cstddef>

namespace kelvane {

bool isValidUtf8(std::string_view bytes) noexcept {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const std::size_t size = bytes.size();
    std::size_t i = 0;
    while (i < size) {
        const unsigned char lead = p[i];
        if (lead < 0x80) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        // The allowed range of the second byte carries the overlong, surrogate
        // and beyond-U+10FFFF exclusions (Unicode table 3-7).
        unsigned char low = 0x80;
        unsigned char high = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            if (lead == 0xE0) {
                low = 0xA0;
            } else if (lead == 0xED) {
                high = 0x9F;
            }
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            if (lead == 0xF0) {
                low = 0x90;
            } else if (lead == 0xF4) {
                high = 0x8F;
            }
        } else {
            return false;
        }
        if (size - i < length || p[i + 1] < low || p[i + 1] > high) {
            return false;
        }
        for (std::size_t k = 2; k < length; ++k) {
            if (p[i + k] < 0x80 || p[i + k] > 0xBF) {
                return false;
            }
        }
        i += length;
    }
    return true;
}

} // namespace kelvane
