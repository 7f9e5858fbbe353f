#pragma once

#include <string>
#include <string_view>

namespace kelvane {

// Uppercase for the scripts bundle names and identifiers are written in:
// ASCII, Latin-1 and Latin Extended-A (ß becomes "SS"), Greek, Cyrillic,
// Armenian and fullwidth Latin. Other characters, and bytes that are not
// well-formed UTF-8, are copied unchanged.
[[nodiscard]] std::string uppercasedUnicode(std::string_view utf8);

} // namespace kelvane
