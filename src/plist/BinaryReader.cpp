#include "plist/BinaryReader.h"

#include "plist/ParseError.h"

namespace kelvane::plist {

Value readBinary(std::string_view, const std::string& source, const ReadLimits&) {
    throw ParseError(source, "the binary form is not supported yet");
}

} // namespace kelvane::plist
