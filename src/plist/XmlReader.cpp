#include "plist/XmlReader.h"

#include "plist/ParseError.h"

namespace kelvane::plist {

Value readXml(std::string_view, const std::string& source, const ReadLimits&) {
    throw ParseError(source, "the XML form is not supported yet");
}

} // namespace kelvane::plist
