#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace kelvane::plist {

std::string readFile(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error) {
        throw FileReadError(path, error.message());
    }
    // Opening a FIFO or a device would block or never end; a folder has no
    // bytes to read. Refuse before opening.
    if (fs::is_directory(status)) {
        throw FileReadError(path, std::make_error_code(std::errc::is_a_directory).message());
    }
    if (!fs::is_regular_file(status)) {
        throw FileReadError(path, "Not a regular file");
    }

    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               &std::fclose);
    if (!file) {
        throw FileReadError(path, std::generic_category().message(errno));
    }
    std::string bytes;
    const auto expected = fs::file_size(path, error);
    if (!error) {
        bytes.reserve(static_cast<std::size_t>(expected));
    }
    char buffer[1 << 16];
    while (true) {
        const std::size_t count = std::fread(buffer, 1, sizeof buffer, file.get());
        bytes.append(buffer, count);
        if (count < sizeof buffer) {
            if (std::ferror(file.get())) {
                throw FileReadError(path, std::generic_category().message(errno));
            }
            break;
        }
    }
    return bytes;
}

Value readPropertyListFile(const std::string& path, const ReadLimits& limits) {
    return readPropertyList(readFile(path), path, limits);
}

} // namespace kelvane::plist
