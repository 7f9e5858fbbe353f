#include "TempDir.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace kelvane::testing {

TempDir::TempDir() {
    static std::atomic<unsigned> counter{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path() /
            ("kelvane-test-" + std::to_string(stamp) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
    std::error_code ignored;
    // Tests may have removed permissions; restore them so removal succeeds.
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ignored);
    std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::file(std::string_view relative) const { return (path_ / relative).string(); }

std::string TempDir::write(std::string_view relative, std::string_view bytes) const {
    const auto target = path_ / relative;
    std::filesystem::create_directories(target.parent_path());
    std::ofstream out(target, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) {
        throw std::runtime_error("cannot write " + target.string());
    }
    return target.string();
}

std::filesystem::path sourceDir() {
    if (const char* dir = std::getenv("KELVANE_SOURCE_DIR")) {
        return dir;
    }
    return KELVANE_SOURCE_DIR_DEFAULT;
}

} // namespace kelvane::testing
