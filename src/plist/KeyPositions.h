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
// for each array on the way, then the key itself. Reports need the keys of a
// few dictionaries of a large file, so a filter says, once per dictionary,
// whether to keep its keys; a reader computes no position it would drop.
class KeyPositions {
public:
    using Path = std::vector<std::string>;
    // Called with the path that leads to a dictionary.
    using Filter = std::function<bool(const Path& dictionaryPath)>;

    // Without a filter every key is kept.
    KeyPositions() = default;
    explicit KeyPositions(Filter wanted) : wanted_(std::move(wanted)) {}

    [[nodiscard]] bool wants(const Path& dictionaryPath) const {
        return !wanted_ || wanted_(dictionaryPath);
    }
    // A key of the dictionary the first `depth` elements of `path` lead to.
    // A repeated key's last occurrence wins, as its value does.
    void record(const Path& path, std::size_t depth, std::string_view key, TextPosition at);
    [[nodiscard]] std::optional<TextPosition> find(std::initializer_list<std::string_view> path) const;
    [[nodiscard]] std::size_t size() const noexcept { return positions_.size(); }

private:
    Filter wanted_;
    std::unordered_map<std::string, TextPosition> positions_;
};

} // namespace kelvane::plist
