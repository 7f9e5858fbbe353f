#pragma once

#include "plist/Value.h"

#include <optional>
#include <string_view>

namespace kelvane::plist {

// Standard base64 (RFC 4648 alphabet, "=" padding optional), ignoring the
// blanks and line breaks property-list writers put inside. nullopt on any
// other character or a length no encoder produces.
[[nodiscard]] std::optional<Data> decodeBase64(std::string_view text);

} // namespace kelvane::plist
