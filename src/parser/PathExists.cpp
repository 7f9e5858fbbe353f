#include "parser/PathExists.h"

#include <filesystem>
#include <system_error>

namespace kelvane {

bool pathExists(const std::string& path) noexcept {
    std::error_code error;
    return std::filesystem::exists(path, error) && !error;
}

} // namespace kelvane
