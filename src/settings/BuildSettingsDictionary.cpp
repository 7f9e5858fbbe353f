#include "settings/SettingKey.h"
#include "settings/SettingsScope.h"

#include <algorithm>

namespace kelvane::settings {
namespace {

// An array given to a string-typed setting: elements joined by one space,
// each element's spaces, quotes and backslashes escaped so that it stays
// one word when the text is split again.
std::string joinedArray(const plist::Array& elements) {
    std::string out;
    bool first = true;
    for (const plist::Value& element : elements) {
        const std::string* text = element.asString();
        if (text == nullptr) {
            continue;
        }
        if (!first) {
            out += ' ';
        }
        first = false;
        for (const char c : *text) {
            if (c == ' ' || c == '\t' || c == '"' || c == '\'' || c == '\\') {
                out += '\\';
            }
            out += c;
        }
    }
    return out;
}

} // namespace

void appendBuildSettings(std::vector<Assignment>& stack, const plist::Dictionary& buildSettings,
                         const SettingOrigin& origin) {
    std::vector<const plist::DictionaryEntry*> entries;
    entries.reserve(buildSettings.size());
    for (const plist::DictionaryEntry& entry : buildSettings) {
        entries.push_back(&entry);
    }
    // Byte order puts `A` before `A[sdk=…]`: the conditional key is pushed
    // later and so wins where it matches.
    std::sort(entries.begin(), entries.end(),
              [](const auto* a, const auto* b) { return a->key < b->key; });
    for (const plist::DictionaryEntry* entry : entries) {
        SettingKey key = readSettingKey(entry->key);
        if (!key.problem.empty() || !key.rest.empty()) {
            continue;
        }
        // The SDK is chosen from SDKROOT before [sdk=…] can be matched.
        if (key.name == "SDKROOT" &&
            std::any_of(key.conditions.begin(), key.conditions.end(),
                        [](const Condition& c) { return c.parameter == "sdk"; })) {
            continue;
        }
        std::string value;
        if (const std::string* text = entry->value.asString()) {
            value = *text;
        } else if (const plist::Array* array = entry->value.asArray()) {
            value = joinedArray(*array);
        } else {
            continue;
        }
        stack.push_back({std::move(key.name), std::move(key.conditions), std::move(value), origin,
                         std::nullopt, false});
    }
}

} // namespace kelvane::settings
