#include "plist/Utf8.h"

#include <cstdint>
#include <cstring>

namespace kelvane::plist::utf8 {

void append(std::string& out, char32_t codePoint) {
    if (codePoint < 0x80) {
        out.push_back(static_cast<char>(codePoint));
    } else if (codePoint < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else if (codePoint < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    }
}

std::size_t findInvalid(std::string_view bytes) noexcept {
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    const std::size_t size = bytes.size();
    std::size_t i = 0;
    while (i < size) {
        // Project files are nearly all ASCII: test 32, then 8 bytes at a time.
        while (i + 32 <= size) {
            std::uint64_t words[4];
            std::memcpy(words, data + i, 32);
            if (((words[0] | words[1] | words[2] | words[3]) & 0x8080808080808080ULL) != 0) {
                break;
            }
            i += 32;
        }
        if (i + 8 <= size) {
            std::uint64_t word;
            std::memcpy(&word, data + i, 8);
            if ((word & 0x8080808080808080ULL) == 0) {
                i += 8;
                continue;
            }
        }
        const unsigned char lead = data[i];
        if (lead < 0x80) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        unsigned char low = 0x80;
        unsigned char high = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            if (lead == 0xE0) {
                low = 0xA0; // overlong
            } else if (lead == 0xED) {
                high = 0x9F; // surrogates
            }
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            if (lead == 0xF0) {
                low = 0x90; // overlong
            } else if (lead == 0xF4) {
                high = 0x8F; // past U+10FFFF
            }
        } else {
            return i;
        }
        if (i + length > size || data[i + 1] < low || data[i + 1] > high) {
            return i;
        }
        for (std::size_t k = 2; k < length; ++k) {
            if ((data[i + k] & 0xC0) != 0x80) {
                return i;
            }
        }
        i += length;
    }
    return std::string_view::npos;
}

} // namespace kelvane::plist::utf8
