#include "plist/ByteSource.h"
#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace kelvane::plist {

namespace {

using FileHandle = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// Far beyond any real project file, workspace or property list. Past it a
// file is refused before it is read: a sparse file claims gigabytes for free,
// and reading them would take minutes and as much memory.
constexpr std::uintmax_t kMaxFileSize = std::uintmax_t{1} << 30;

[[noreturn]] void refuseTooLarge(const std::string& path) {
    throw FileReadError(path, std::make_error_code(std::errc::file_too_large).message());
}

FileHandle openRegularFile(const std::string& path) {
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
    if (const auto size = fs::file_size(path, error); !error && size > kMaxFileSize) {
        refuseTooLarge(path);
    }
    FileHandle file(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (!file) {
        throw FileReadError(path, std::generic_category().message(errno));
    }
    return file;
}

class FileByteSource : public ByteSource {
public:
    FileByteSource(std::FILE* file, const std::string& path) : file_(file), path_(path) {}

    std::size_t read(char* buffer, std::size_t size) override {
        std::size_t total = 0;
        while (total < size) {
            const std::size_t count = std::fread(buffer + total, 1, size - total, file_);
            total += count;
            // The file may have grown since its size was checked.
            consumed_ += count;
            if (consumed_ > kMaxFileSize) {
                refuseTooLarge(path_);
            }
            if (count == 0) {
                if (std::ferror(file_)) {
                    throw FileReadError(path_, std::generic_category().message(errno));
                }
                break;
            }
        }
        return total;
    }

private:
    std::FILE* file_;
    const std::string& path_;
    std::uintmax_t consumed_ = 0;
};

// Files up to this size are read whole; larger ones go to the reader in
// blocks, so that the text and the values built from it are not both in
// memory at their full size.
constexpr std::size_t kWholeFileLimit = 1 << 20;

} // namespace

std::string readFile(const std::string& path) {
    const FileHandle file = openRegularFile(path);
    FileByteSource input(file.get(), path);
    std::string bytes;
    std::error_code error;
    const auto expected = std::filesystem::file_size(path, error);
    if (!error) {
        bytes.reserve(static_cast<std::size_t>(expected));
    }
    char buffer[1 << 16];
    while (const std::size_t count = input.read(buffer, sizeof buffer)) {
        bytes.append(buffer, count);
    }
    return bytes;
}

Value readPropertyListFile(const std::string& path, const ReadLimits& limits,
                           KeyPositions* positions) {
    const FileHandle file = openRegularFile(path);
    FileByteSource input(file.get(), path);
    std::string head(kWholeFileLimit, '\0');
    head.resize(input.read(head.data(), head.size()));
    if (head.size() < kWholeFileLimit) {
        return readPropertyList(head, path, limits, positions);
    }
    return readPropertyList(std::move(head), input, path, limits, positions);
}

} // namespace kelvane::plist
