#include "plist/ParseError.h"

namespace kelvane::plist {

ParseError::ParseError(const std::string& source, std::size_t line, std::size_t column,
                       const std::string& reason)
    : std::runtime_error(source + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " +
                         reason),
      reason_(reason), line_(line), column_(column) {}

ParseError::ParseError(const std::string& source, const std::string& reason)
    : std::runtime_error(source + ": " + reason), reason_(reason) {}

FileReadError::FileReadError(const std::string& path, const std::string& systemText)
    : std::runtime_error(path + ": " + systemText) {}

} // namespace kelvane::plist
