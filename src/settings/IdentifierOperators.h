#pragma once

#include <string>
#include <string_view>

namespace kelvane::settings {

// `:identifier`: a C identifier of ASCII letters, digits and `_`; every other
// character, and a leading digit, becomes one `_` ("2048 Game" → "_048_Game").
[[nodiscard]] std::string cIdentifier(std::string_view text);
// `:rfc1034identifier`: the same with `-` kept and used as the replacement
// ("My_App.v2" → "My-App-v2").
[[nodiscard]] std::string rfc1034Identifier(std::string_view text);
// `:c99extidentifier`: like `:identifier` but letters of the scripts C99
// allows in identifiers are kept ("ÜTF-8" → "ÜTF_8"), and the replacement is
// per code point rather than per character.
[[nodiscard]] std::string c99ExtendedIdentifier(std::string_view text);

} // namespace kelvane::settings
