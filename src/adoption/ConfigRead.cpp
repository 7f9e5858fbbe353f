#include "adoption/ConfigFile.h"

#include "model/FilePath.h"
#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"

#include <filesystem>
#include <system_error>

namespace kelvane::adoption {

std::string configDisplayPath(const std::string& folder) {
    return std::filesystem::path(path::join(folder, kConfigFileName)).lexically_normal().string();
}

std::optional<ScanConfig> readScanConfig(const std::string& folder) {
    namespace fs = std::filesystem;
    const std::string filePath = path::join(folder, kConfigFileName);
    const std::string shown = configDisplayPath(folder);
    std::error_code error;
    const fs::file_status status = fs::status(filePath, error);
    if (status.type() == fs::file_type::not_found) {
        return std::nullopt;
    }
    // The size is checked before reading; readFile refuses folders, FIFOs
    // and devices on its own, before opening them.
    if (fs::is_regular_file(status)) {
        const auto size = fs::file_size(filePath, error);
        if (!error && size > kMaxConfigSize) {
            throw ConfigError(shown + ": larger than " + std::to_string(kMaxConfigSize / 1024) +
                              " KiB; a configuration file is a few lines");
        }
    }
    std::string bytes;
    try {
        bytes = plist::readFile(filePath);
    } catch (const plist::FileReadError& failure) {
        // Named as the other errors about the file name it.
        std::string text = failure.what();
        if (text.starts_with(filePath)) {
            text.replace(0, filePath.size(), shown);
        }
        throw ConfigError(text);
    }
    ScanConfig config = parseScanConfig(bytes, shown);
    if (config.baseline && !fs::path(config.baseline->text).is_absolute()) {
        config.baseline->text = path::join(folder, config.baseline->text);
    }
    return config;
}

} // namespace kelvane::adoption
