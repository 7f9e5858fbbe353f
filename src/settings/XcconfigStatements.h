#pragma once

#include "settings/Assignment.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::settings {

// One logical line of an .xcconfig file: continuation lines already joined,
// comments dropped, blank lines skipped.
struct XcconfigStatement {
    enum class Kind { assignment, include, problem };
    Kind kind = Kind::problem;
    // 1-based line where the statement starts.
    std::size_t line = 0;
    // 1-based column where it starts on that line.
    std::size_t column = 0;
    // assignment
    std::string name;
    std::vector<Condition> conditions;
    std::string value;
    // include: the path between the quotes, and whether `#include?` was used.
    std::string path;
    bool optional = false;
    // problem: what is wrong with the line, which Xcode skips.
    std::string problem;
};

// Reads statements one at a time, so a caller that stops early (a bound was
// hit) never scans the rest of a huge file.
class XcconfigStatements {
public:
    // A byte order mark, as some editors write, is not part of the first line.
    explicit XcconfigStatements(std::string_view text)
        : text_(text), at_(text.starts_with("\xEF\xBB\xBF") ? 3 : 0) {}

    [[nodiscard]] std::optional<XcconfigStatement> next();

private:
    // The next physical line without its line break, or nullopt at the end.
    std::optional<std::string_view> nextLine();
    [[nodiscard]] XcconfigStatement readDirective(std::string_view line) const;
    [[nodiscard]] XcconfigStatement readAssignment(std::string_view line);

    std::string_view text_;
    std::size_t at_;
    std::size_t lineNumber_ = 0;
};

} // namespace kelvane::settings
