#include "plist/PropertyListReader.h"

#include "plist/BinaryReader.h"
#include "plist/ByteSource.h"
#include "plist/OldStyleReader.h"
#include "plist/XmlReader.h"

namespace kelvane::plist {

namespace {
bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

bool looksLikeXml(std::string_view bytes) {
    // A UTF-8 byte order mark may precede the XML declaration.
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.remove_prefix(3);
    }
    std::size_t i = 0;
    while (i < bytes.size() && isBlank(bytes[i])) {
        ++i;
    }
    const std::string_view rest = bytes.substr(i);
    return rest.starts_with("<?xml") || rest.starts_with("<!DOCTYPE") ||
           rest.starts_with("<plist") || rest.starts_with("<!--");
}
} // namespace

Value readPropertyList(std::string_view bytes, const std::string& source,
                       const ReadLimits& limits, KeyPositions* positions) {
    if (bytes.starts_with("bplist00")) {
        return readBinary(bytes, source, limits);
    }
    if (looksLikeXml(bytes)) {
        return readXml(bytes, source, limits, positions);
    }
    return readOldStyle(bytes, source, limits, positions);
}

Value readPropertyList(std::string head, ByteSource& rest, const std::string& source,
                       const ReadLimits& limits, KeyPositions* positions) {
    if (head.starts_with("bplist00")) {
        char buffer[1 << 16];
        while (const std::size_t count = rest.read(buffer, sizeof buffer)) {
            head.append(buffer, count);
        }
        return readBinary(head, source, limits);
    }
    if (looksLikeXml(head)) {
        return readXml(head, rest, source, limits, positions);
    }
    return readOldStyle(std::move(head), rest, source, limits, positions);
}

} // namespace kelvane::plist
