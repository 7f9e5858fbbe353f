#include "settings/XcconfigStatements.h"

#include "settings/SettingKey.h"

namespace kelvane::settings {
namespace {

// Xcode ends a comment at the line break only: `//` inside a value or inside
// quotes starts one too (`https://x.com` reads `https:`).
std::string_view withoutComment(std::string_view line) noexcept {
    const auto slashes = line.find("//");
    return slashes == std::string_view::npos ? line : line.substr(0, slashes);
}

XcconfigStatement problemAt(std::size_t line, std::string what) {
    XcconfigStatement statement;
    statement.kind = XcconfigStatement::Kind::problem;
    statement.line = line;
    statement.problem = std::move(what);
    return statement;
}

} // namespace

std::optional<std::string_view> XcconfigStatements::nextLine() {
    if (at_ >= text_.size()) {
        return std::nullopt;
    }
    ++lineNumber_;
    const std::size_t start = at_;
    while (at_ < text_.size()) {
        const char c = text_[at_];
        if (c == '\n') {
            return text_.substr(start, at_++ - start);
        }
        if (c == '\r') {
            const std::size_t end = at_++;
            if (at_ < text_.size() && text_[at_] == '\n') {
                ++at_;
            }
            return text_.substr(start, end - start);
        }
        // U+2028 LINE SEPARATOR and U+2029 PARAGRAPH SEPARATOR end lines too.
        if (c == '\xE2' && at_ + 2 < text_.size() && text_[at_ + 1] == '\x80' &&
            (text_[at_ + 2] == '\xA8' || text_[at_ + 2] == '\xA9')) {
            const std::size_t end = at_;
            at_ += 3;
            return text_.substr(start, end - start);
        }
        ++at_;
    }
    return text_.substr(start);
}

std::optional<XcconfigStatement> XcconfigStatements::next() {
    while (const auto raw = nextLine()) {
        const std::string_view line = trimBlanks(withoutComment(*raw));
        if (line.empty()) {
            continue;
        }
        XcconfigStatement statement =
            line.front() == '#' ? readDirective(line) : readAssignment(line);
        // Blanks before a statement are ASCII: bytes and characters agree.
        statement.column = static_cast<std::size_t>(line.data() - raw->data()) + 1;
        return statement;
    }
    return std::nullopt;
}

XcconfigStatement XcconfigStatements::readDirective(std::string_view line) const {
    std::string_view rest = trimBlanks(line.substr(1));
    std::size_t wordEnd = 0;
    while (wordEnd < rest.size() && !isBlank(rest[wordEnd]) && rest[wordEnd] != '"') {
        ++wordEnd;
    }
    const std::string_view word = rest.substr(0, wordEnd);
    if ((word != "include" && word != "include?") || wordEnd == rest.size() ||
        !isBlank(rest[wordEnd])) {
        std::string what = "unsupported directive #";
        what += word;
        what += "; line skipped";
        return problemAt(lineNumber_, std::move(what));
    }
    rest = trimBlanks(rest.substr(wordEnd));
    const auto close =
        rest.size() > 1 && rest.front() == '"' ? rest.find('"', 1) : std::string_view::npos;
    if (close == std::string_view::npos || close == 1 || close + 1 != rest.size()) {
        std::string what = "#";
        what += word;
        what += " needs one path in double quotes; line skipped";
        return problemAt(lineNumber_, std::move(what));
    }
    XcconfigStatement statement;
    statement.kind = XcconfigStatement::Kind::include;
    statement.line = lineNumber_;
    statement.path = std::string(rest.substr(1, close - 1));
    statement.optional = word == "include?";
    return statement;
}

XcconfigStatement XcconfigStatements::readAssignment(std::string_view line) {
    const std::size_t first = lineNumber_;
    SettingKey key = readSettingKey(line);
    if (!key.problem.empty()) {
        return problemAt(first, key.problem + "; line skipped");
    }
    if (key.rest.empty() || key.rest.front() != '=') {
        return problemAt(first, "expected = after " + key.name + "; line skipped");
    }
    // A value ending in a backslash continues on the next line, whatever that
    // line holds; the pieces are joined by one space.
    std::string value(trimBlanks(key.rest.substr(1)));
    while (!value.empty() && value.back() == '\\') {
        value.pop_back();
        while (!value.empty() && isBlank(value.back())) {
            value.pop_back();
        }
        const auto piece = nextLine();
        if (!piece) {
            break;
        }
        value += ' ';
        value += trimBlanks(withoutComment(*piece));
    }
    std::string_view trimmed = trimBlanks(value);
    if (!trimmed.empty() && trimmed.back() == ';') {
        trimmed = trimBlanks(trimmed.substr(0, trimmed.size() - 1));
    }
    XcconfigStatement statement;
    statement.kind = XcconfigStatement::Kind::assignment;
    statement.line = first;
    statement.name = std::move(key.name);
    statement.conditions = std::move(key.conditions);
    statement.value = std::string(trimmed);
    return statement;
}

} // namespace kelvane::settings
