#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvane::plist {

// A place in a text: 1-based line and column, the column counted in
// characters, as editors count it.
struct TextPosition {
    std::size_t line = 0;
    std::size_t column = 0;
    friend bool operator==(const TextPosition&, const TextPosition&) = default;
};

// Where dictionary keys stand in the text of a property list, recorded by the
// text readers while they read (the binary form has no lines). A key is named
// by its path from the root: the keys of the dictionaries around it, with ""
// for each array on the way. Reports need a few keys of a large file, so a
// filter says which to keep; a reader computes no position it would drop.
class KeyPositions {
public:
    using Path = std::vector<std::string>;
    using Filter = std::function<bool(const Path& path)>;

    // Without a filter every key is kept.
    KeyPositions() = default;
    explicit KeyPositions(Filter wanted) : wanted_(std::move(wanted)) {}

    [[nodiscard]] bool wants(const Path& path) const { return !wanted_ || wanted_(path); }
    // A repeated key's last occurrence wins, as its value does.
    void record(const Path& path, TextPosition at);
    [[nodiscard]] std::optional<TextPosition> find(std::initializer_list<std::string_view> path) const;
    [[nodiscard]] std::size_t size() const noexcept { return positions_.size(); }

private:
    Filter wanted_;
    std::unordered_map<std::string, TextPosition> positions_;
};

} // namespace kelvane::plist
