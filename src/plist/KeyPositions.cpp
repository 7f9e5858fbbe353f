#include "plist/KeyPositions.h"

namespace kelvane::plist {

namespace {

// Keys may hold any character but NUL, which no text form can spell
// unescaped; it keeps "a" + "b/c" apart from "a/b" + "c".
constexpr char kSeparator = '\0';

template <typename Parts> std::string joined(const Parts& parts) {
    std::string key;
    for (const auto& part : parts) {
        key.append(part);
        key.push_back(kSeparator);
    }
    return key;
}

} // namespace

void KeyPositions::record(const Path& path, TextPosition at) {
    positions_.insert_or_assign(joined(path), at);
}

std::optional<TextPosition> KeyPositions::find(std::initializer_list<std::string_view> path) const {
    const auto found = positions_.find(joined(path));
    if (found == positions_.end()) {
        return std::nullopt;
    }
    return found->second;
}

} // namespace kelvane::plist
