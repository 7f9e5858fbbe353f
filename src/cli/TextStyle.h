#pragma once

#include "diagnostics/Severity.h"

#include <string>
#include <string_view>

namespace kelvane::cli {

// The colours a scan is drawn in on a terminal, after the window's: gray for
// what has not started, blue for what runs, then green, orange and red.
enum class Tone { muted, accent, success, warning, failure };

[[nodiscard]] Tone toneOf(Severity severity) noexcept;

// Colour or none; everything else about the text is the same either way.
struct TextStyle {
    bool color = false;

    [[nodiscard]] std::string paint(Tone tone, std::string_view text) const;
    [[nodiscard]] std::string bold(std::string_view text) const;
};

} // namespace kelvane::cli
