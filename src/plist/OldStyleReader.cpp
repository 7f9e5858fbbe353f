#include "plist/OldStyleReader.h"

#include "plist/ParseError.h"

namespace kelvane::plist {

Value readOldStyle(std::string_view, const std::string& source, const ReadLimits&) {
    throw ParseError(source, "the old-style text form is not supported yet");
}

} // namespace kelvane::plist
