#include "plist/KeyPositions.h"

namespace kelvane::plist {

namespace {

// Keys may hold any character but NUL, which no text form can spell
// unescaped; it keeps "a" + "b/c" apart from "a/b" + "c".
constexpr char kSeparator = '\0';

template <typename Parts> std::string joined(const Parts& parts, std::size_t count) {
    std::string key;
    for (const auto& part : parts) {
        if (count-- == 0) {
            break;
        }
        key.append(part);
        key.push_back(kSeparator);
    }
    return key;
}

} // namespace

void KeyPositions::record(const Path& path, std::size_t depth, std::string_view key,
                          TextPosition at) {
    std::string joinedKey = joined(path, depth);
    joinedKey.append(key);
    joinedKey.push_back(kSeparator);
    positions_.insert_or_assign(std::move(joinedKey), at);
}

std::optional<TextPosition> KeyPositions::find(std::initializer_list<std::string_view> path) const {
    const auto found = positions_.find(joined(path, path.size()));
    if (found == positions_.end()) {
        return std::nullopt;
    }
    return found->second;
}

} // namespace kelvane::plist
