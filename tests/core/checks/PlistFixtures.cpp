#include "PlistFixtures.h"

#include <utility>

namespace kelvane::test {

std::string entry(std::string_view key, std::string_view valueXml) {
    return "<key>" + std::string(key) + "</key>" + std::string(valueXml);
}

std::string text(std::string_view value) {
    return "<string>" + std::string(value) + "</string>";
}

std::string texts(std::initializer_list<std::string_view> values) {
    std::string xml = "<array>";
    for (std::string_view value : values) {
        xml += text(value);
    }
    return xml + "</array>";
}

std::string plistDocument(std::string_view entries) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n" +
           std::string(entries) + "\n</dict>\n</plist>\n";
}

std::string truncatedDocument(std::string_view entries) {
    std::string document = plistDocument(entries);
    document.resize(document.find("\n</dict>") - 3);
    return document;
}

TargetContext withEntitlements(TargetContext target, std::string path) {
    target.entitlementsURL = std::move(path);
    return target;
}

TargetContext withInfoPlist(TargetContext target, std::string path) {
    target.infoPlistURL = std::move(path);
    return target;
}

} // namespace kelvane::test
