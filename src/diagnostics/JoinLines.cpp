#include "diagnostics/JoinLines.h"

namespace kelvane {

std::string join(const std::vector<std::string>& parts, std::string_view separator) {
    std::string result;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) {
            result += separator;
        }
        result += parts[i];
    }
    return result;
}

std::string joinLines(const std::vector<std::string>& lines) {
    return join(lines, "\n");
}

} // namespace kelvane
