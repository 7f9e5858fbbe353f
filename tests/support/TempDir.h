#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kelvane::testing {

// A fresh folder under the system's temporary folder, removed with everything
// in it when the object goes away. Tests build small projects inside it.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
    // Path of `relative` inside the folder, as text.
    [[nodiscard]] std::string file(std::string_view relative) const;
    // Writes `bytes` to `relative`, creating the folders on the way; returns its path.
    std::string write(std::string_view relative, std::string_view bytes) const;

private:
    std::filesystem::path path_;
};

// The repository's root folder (for examples and fixtures).
[[nodiscard]] std::filesystem::path sourceDir();

} // namespace kelvane::testing
