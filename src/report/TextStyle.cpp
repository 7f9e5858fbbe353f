#include "report/TextStyle.h"

namespace kelvane::report {

namespace {

constexpr std::string_view kReset = "\x1b[0m";

std::string_view escapeFor(Tone tone) noexcept {
    switch (tone) {
    case Tone::muted:
        return "\x1b[90m";
    case Tone::accent:
        return "\x1b[34m";
    case Tone::success:
        return "\x1b[32m";
    case Tone::warning:
        // The 256-colour orange; terminals without it fall back to a near
        // colour rather than to nothing.
        return "\x1b[38;5;208m";
    case Tone::failure:
        return "\x1b[31m";
    }
    return "";
}

} // namespace

std::string TextStyle::paint(Tone tone, std::string_view text) const {
    if (!color) {
        return std::string(text);
    }
    return std::string(escapeFor(tone)) + std::string(text) + std::string(kReset);
}

std::string TextStyle::bold(std::string_view text) const {
    if (!color) {
        return std::string(text);
    }
    return "\x1b[1m" + std::string(text) + std::string(kReset);
}

} // namespace kelvane::report
