#pragma once

#include <cstdio>

namespace kelvane::cli {

// Whether a stream of the process is an interactive terminal, which decides
// between live progress and a plain report. False where it cannot be told.
[[nodiscard]] bool isTerminal(std::FILE* stream) noexcept;

enum class ColorChoice { automatic, always, never };

// `always` and `never` are final; `automatic` colours a terminal unless the
// environment sets NO_COLOR to anything but the empty text.
[[nodiscard]] bool useColor(ColorChoice choice, bool outputIsTerminal,
                            const char* noColor) noexcept;

} // namespace kelvane::cli
