#pragma once

#include "presentation/ScanPresentation.h"

#include <string>
#include <string_view>

namespace kelvane::report {

using presentation::Tone;

// Colour or none; everything else about the text is the same either way.
// The tones are the window's (gray, blue, green, orange, red), so both
// front-ends colour a scan alike.
struct TextStyle {
    bool color = false;

    [[nodiscard]] std::string paint(Tone tone, std::string_view text) const;
    [[nodiscard]] std::string bold(std::string_view text) const;
};

} // namespace kelvane::report
