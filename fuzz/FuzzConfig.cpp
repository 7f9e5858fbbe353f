// Any text read as .kelvane.yml either gives a configuration or a
// ConfigError, without crashing, recursing without bound or reading a file:
// only the text is parsed.
#include "adoption/ConfigFile.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvane::adoption;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const ScanConfig config = parseScanConfig(text, ".kelvane.yml");
        (void)config;
    } catch (const ConfigError&) {
    }
    return 0;
}
