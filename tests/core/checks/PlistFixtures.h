#pragma once

#include "model/TargetContext.h"

#include <initializer_list>
#include <string>
#include <string_view>

// Entitlements and Info.plist files for check fixtures, written in XML as
// Xcode writes them, so a case reads as the file a developer would see.
namespace kelvane::test {

// "<key>key</key>" followed by the value's XML.
[[nodiscard]] std::string entry(std::string_view key, std::string_view valueXml);
[[nodiscard]] std::string text(std::string_view value);
[[nodiscard]] std::string texts(std::initializer_list<std::string_view> values);
// A whole XML property list whose root dictionary holds `entries`.
[[nodiscard]] std::string plistDocument(std::string_view entries);
// The same document cut off inside its last entry, as a half-written file is.
[[nodiscard]] std::string truncatedDocument(std::string_view entries);

[[nodiscard]] TargetContext withEntitlements(TargetContext target, std::string path);
[[nodiscard]] TargetContext withInfoPlist(TargetContext target, std::string path);

} // namespace kelvane::test
