#include "parser/WorkspaceLocation.h"

#include <cstddef>

namespace kelvane {

namespace {

bool isPatternSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// Position of the next `c` at or after a position, remembering the last
// answer. Candidate starts only move forward, so each byte is searched at most
// once and the whole match stays linear even for thousands of `location`
// words without a colon or closing quote after them.
class NextOccurrence {
public:
    NextOccurrence(std::string_view text, char c) : text_(text), c_(c) {}

    std::size_t from(std::size_t position) {
        const bool known = searched_ && position >= searchedFrom_ &&
                           (found_ == std::string_view::npos || found_ >= position);
        if (!known) {
            searchedFrom_ = position;
            found_ = text_.find(c_, position);
            searched_ = true;
        }
        return found_;
    }

private:
    std::string_view text_;
    char c_;
    bool searched_ = false;
    std::size_t searchedFrom_ = 0;
    std::size_t found_ = std::string_view::npos;
};

std::size_t skipSpaces(std::string_view text, std::size_t position) {
    while (position < text.size() && isPatternSpace(text[position])) {
        ++position;
    }
    return position;
}

} // namespace

// Every quantifier in the pattern is followed by a character its class cannot
// match (`\s*` by `=` or `"`, `[^:]*` by `:`, `[^"]*\.xcodeproj` by `"`), so
// from a given start there is exactly one way the engine can succeed: no
// backtracking is ever needed, only a search for the next start.
std::optional<std::string_view> firstProjectLocation(std::string_view text) noexcept {
    constexpr std::string_view keyword = "location";
    constexpr std::string_view suffix = ".xcodeproj";
    NextOccurrence nextColon(text, ':');
    NextOccurrence nextQuote(text, '"');

    for (std::size_t start = text.find(keyword); start != std::string_view::npos;
         start = text.find(keyword, start + 1)) {
        std::size_t at = skipSpaces(text, start + keyword.size());
        if (at >= text.size() || text[at] != '=') {
            continue;
        }
        at = skipSpaces(text, at + 1);
        if (at >= text.size() || text[at] != '"') {
            continue;
        }
        const std::size_t colon = nextColon.from(at + 1);
        if (colon == std::string_view::npos) {
            continue;
        }
        const std::size_t captureStart = colon + 1;
        const std::size_t closingQuote = nextQuote.from(captureStart);
        if (closingQuote == std::string_view::npos || closingQuote - captureStart < suffix.size() ||
            text.substr(closingQuote - suffix.size(), suffix.size()) != suffix) {
            continue;
        }
        return text.substr(captureStart, closingQuote - captureStart);
    }
    return std::nullopt;
}

} // namespace kelvane
