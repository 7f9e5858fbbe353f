#pragma once

#include "settings/SettingsScope.h"
#include "settings/XcconfigReader.h"

#include <string>
#include <string_view>
#include <utility>

namespace kelvane::settings::testing {

inline XcconfigContents parse(std::string_view text) {
    return parseXcconfig(text, "/project/Config.xcconfig", "target xcconfig", "/project");
}

inline SettingsScope scopeOf(std::string_view text, Bindings bindings = {}) {
    return SettingsScope(parse(text).assignments, std::move(bindings));
}

inline Assignment assignment(std::string name, std::string value) {
    Assignment result;
    result.name = std::move(name);
    result.value = std::move(value);
    return result;
}

// prefix + number + suffix, built by appending: GCC 12 warns, wrongly, about
// `"L" + std::to_string(n)` at -O2.
inline std::string numbered(std::string_view prefix, int number, std::string_view suffix = {}) {
    std::string out(prefix);
    out += std::to_string(number);
    out += suffix;
    return out;
}

// The value, or "unknown: <reason>", so one comparison shows both outcomes.
inline std::string shown(const Resolved& resolved) {
    return resolved.unknownReason ? "unknown: " + *resolved.unknownReason : resolved.value;
}

} // namespace kelvane::settings::testing
