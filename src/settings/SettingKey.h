#pragma once

#include "settings/Assignment.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelvane::settings {

// The left-hand side of an assignment, `NAME[param=pattern]…`, as both the
// .xcconfig reader and the project-file reader meet it.
struct SettingKey {
    std::string name;
    std::vector<Condition> conditions;
    // The text after the last condition, blanks before it skipped.
    std::string_view rest;
    // Empty when the key is well formed up to `rest`; else what went wrong.
    std::string problem;
};

// [A-Za-z_][A-Za-z0-9_]*
[[nodiscard]] bool isSettingName(std::string_view text) noexcept;

// Reads a setting name and its conditions from the start of `text`. Blanks
// may stand between the name and the conditions and between conditions;
// inside the brackets parameter and pattern are kept verbatim.
[[nodiscard]] SettingKey readSettingKey(std::string_view text);

[[nodiscard]] constexpr bool isBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}
[[nodiscard]] std::string_view trimBlanks(std::string_view text) noexcept;

} // namespace kelvane::settings
