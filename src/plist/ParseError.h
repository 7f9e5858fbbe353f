#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace kelvane::plist {

// Bytes that are not a property list in any accepted form. what() is the
// whole user-facing text: "<source>:<line>:<column>: <reason>" for the text
// forms, "<source>: <reason>" for binary data.
class ParseError : public std::runtime_error {
public:
    ParseError(const std::string& source, std::size_t line, std::size_t column,
               const std::string& reason);
    ParseError(const std::string& source, const std::string& reason);

    [[nodiscard]] const std::string& reason() const noexcept { return reason_; }
    // 0 for binary data, which has no lines.
    [[nodiscard]] std::size_t line() const noexcept { return line_; }
    [[nodiscard]] std::size_t column() const noexcept { return column_; }

private:
    std::string reason_;
    std::size_t line_ = 0;
    std::size_t column_ = 0;
};

// A file that could not be read: "<path>: <system error text>".
class FileReadError : public std::runtime_error {
public:
    FileReadError(const std::string& path, const std::string& systemText);
};

} // namespace kelvane::plist
