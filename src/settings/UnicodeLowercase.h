#pragma once

#include <string>
#include <string_view>

namespace kelvane {

// Unicode's full lowercase mapping (Unicode 14) applied character by
// character, without any context rule: "Σ" always becomes "σ", never the
// final "ς", and "İ" becomes "i̇" (i + combining dot above). Bytes that are
// not well-formed UTF-8 are copied through unchanged, so any input is safe.
[[nodiscard]] std::string lowercasedUnicode(std::string_view utf8);

} // namespace kelvane
