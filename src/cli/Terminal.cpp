#include "cli/Terminal.h"

#if defined(__unix__) || defined(__APPLE__)
#include <unistd.h>
#endif

namespace kelvane::cli {

bool isTerminal(std::FILE* stream) noexcept {
#if defined(__unix__) || defined(__APPLE__)
    return stream != nullptr && ::isatty(::fileno(stream)) == 1;
#else
    (void)stream;
    return false;
#endif
}

bool useColor(ColorChoice choice, bool outputIsTerminal, const char* noColor) noexcept {
    switch (choice) {
    case ColorChoice::always:
        return true;
    case ColorChoice::never:
        return false;
    case ColorChoice::automatic:
        break;
    }
    const bool noColorSet = noColor != nullptr && noColor[0] != '\0';
    return outputIsTerminal && !noColorSet;
}

} // namespace kelvane::cli
