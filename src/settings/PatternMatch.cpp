#include "settings/SettingsScope.h"

namespace kelvane::settings {
namespace {

// Matches the bracket expression starting just after `[` at pattern[at]
// against byte `c`. Returns the position after the closing `]`, or npos when
// the bracket is not closed (the `[` is then an ordinary character).
std::size_t matchBracket(std::string_view pattern, std::size_t at, char c, bool& matched) noexcept {
    bool negated = false;
    if (at < pattern.size() && (pattern[at] == '!' || pattern[at] == '^')) {
        negated = true;
        ++at;
    }
    bool found = false;
    bool first = true;
    while (at < pattern.size() && (first || pattern[at] != ']')) {
        first = false;
        char low = pattern[at];
        if (low == '\\' && at + 1 < pattern.size()) {
            low = pattern[++at];
        }
        ++at;
        char high = low;
        if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']') {
            high = pattern[at + 1];
            if (high == '\\' && at + 2 < pattern.size()) {
                ++at;
                high = pattern[at + 1];
            }
            at += 2;
        }
        const auto u = static_cast<unsigned char>(c);
        if (static_cast<unsigned char>(low) <= u && u <= static_cast<unsigned char>(high)) {
            found = true;
        }
    }
    if (at >= pattern.size()) {
        return std::string_view::npos;
    }
    matched = found != negated;
    return at + 1;
}

} // namespace

// Byte by byte, as the conditions Xcode meets name SDKs, configurations and
// architectures in ASCII. The star keeps only its latest position to return
// to, so matching costs at most pattern × text steps, never exponential.
bool patternMatches(std::string_view pattern, std::string_view text) noexcept {
    std::size_t p = 0;
    std::size_t t = 0;
    std::size_t starP = std::string_view::npos;
    std::size_t starT = 0;
    while (t < text.size()) {
        if (p < pattern.size()) {
            const char c = pattern[p];
            if (c == '*') {
                starP = ++p;
                starT = t;
                continue;
            }
            if (c == '?') {
                ++p;
                ++t;
                continue;
            }
            if (c == '[') {
                bool matched = false;
                const std::size_t next = matchBracket(pattern, p + 1, text[t], matched);
                if (next != std::string_view::npos) {
                    if (matched) {
                        p = next;
                        ++t;
                        continue;
                    }
                } else if (text[t] == '[') {
                    ++p;
                    ++t;
                    continue;
                }
            } else {
                char literal = c;
                std::size_t width = 1;
                if (c == '\\' && p + 1 < pattern.size()) {
                    literal = pattern[p + 1];
                    width = 2;
                }
                if (literal == text[t]) {
                    p += width;
                    ++t;
                    continue;
                }
            }
        }
        if (starP == std::string_view::npos) {
            return false;
        }
        p = starP;
        t = ++starT;
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

} // namespace kelvane::settings
