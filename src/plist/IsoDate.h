#pragma once

#include "plist/Value.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelvane::plist {

// "2024-05-01T12:00:00Z", the only form property lists write dates in
// (fractional seconds are accepted on reading). nullopt when the text is not
// such a date.
[[nodiscard]] std::optional<Date> parseIsoDate(std::string_view text);

// The same form, in UTC, whole seconds.
[[nodiscard]] std::string formatIsoDate(Date date);

} // namespace kelvane::plist
