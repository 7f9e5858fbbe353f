#include "settings/SettingKey.h"

namespace kelvane::settings {
namespace {

constexpr bool isNameStart(char c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}
constexpr bool isNameChar(char c) noexcept {
    return isNameStart(c) || (c >= '0' && c <= '9');
}

std::string_view skipBlanks(std::string_view text) noexcept {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

} // namespace

bool isSettingName(std::string_view text) noexcept {
    if (text.empty() || !isNameStart(text.front())) {
        return false;
    }
    for (const char c : text) {
        if (!isNameChar(c)) {
            return false;
        }
    }
    return true;
}

std::string_view trimBlanks(std::string_view text) noexcept {
    text = skipBlanks(text);
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

SettingKey readSettingKey(std::string_view text) {
    SettingKey key;
    if (text.empty() || !isNameStart(text.front())) {
        key.problem = "expected a setting name";
        return key;
    }
    std::size_t end = 1;
    while (end < text.size() && isNameChar(text[end])) {
        ++end;
    }
    key.name = std::string(text.substr(0, end));
    text = skipBlanks(text.substr(end));
    while (!text.empty() && text.front() == '[') {
        const auto close = text.find(']');
        const auto equals = text.find('=');
        if (close == std::string_view::npos || equals == std::string_view::npos || equals > close) {
            key.problem = "expected [parameter=pattern] after " + key.name;
            return key;
        }
        key.conditions.push_back({std::string(text.substr(1, equals - 1)),
                                  std::string(text.substr(equals + 1, close - equals - 1))});
        text = skipBlanks(text.substr(close + 1));
    }
    key.rest = text;
    return key;
}

} // namespace kelvane::settings
