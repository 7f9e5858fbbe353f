#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// `.kelvane.yml`: what a repository asks of every scan of it, so that CI and
// developers run the same checks against the same baseline.
namespace kelvane::adoption {

// A value from the file with the line it was written on, for errors found
// only later (a check id the registry does not know).
struct ConfigValue {
    std::string text{};
    int line = 0;
    friend bool operator==(const ConfigValue&, const ConfigValue&) = default;
};

struct ScanConfig {
    std::vector<ConfigValue> skip{};
    std::vector<ConfigValue> only{};
    // Folders, relative to the file's folder, that are not scanned.
    std::vector<std::string> exclude{};
    // Relative paths are resolved against the file's folder by the reader.
    std::optional<ConfigValue> baseline{};
    std::optional<bool> asBuilt{};
    std::optional<ConfigValue> configuration{};
    friend bool operator==(const ScanConfig&, const ScanConfig&) = default;
};

// A file that cannot be used, with "<path>:<line>: " leading its text when
// the problem has a line.
class ConfigError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The file's name, wherever it is looked for.
inline constexpr std::string_view kConfigFileName = ".kelvane.yml";

// Far beyond a real file of six keys; past it the file is refused unread.
inline constexpr std::size_t kMaxConfigSize = 64 * 1024;

// The deepest nesting read. The file needs two levels (a map of lists); the
// margin keeps the error about the value, not about the nesting.
inline constexpr int kMaxConfigNesting = 16;

// Reads the text of a configuration file. `displayPath` names it in errors.
// Throws ConfigError.
[[nodiscard]] ScanConfig parseScanConfig(std::string_view text, const std::string& displayPath);

// Reads `folder`/.kelvane.yml; nothing when there is no such entry. A folder,
// FIFO or device in its place, or a file past kMaxConfigSize, is an error.
// The baseline's path comes back resolved against `folder`. Throws
// ConfigError.
[[nodiscard]] std::optional<ScanConfig> readScanConfig(const std::string& folder);

// The path errors name for the file in `folder`: "./x" is shortened to "x".
[[nodiscard]] std::string configDisplayPath(const std::string& folder);

} // namespace kelvane::adoption
