#include "settings/MacroOperators.h"

#include "settings/IdentifierOperators.h"
#include "settings/PathOperators.h"
#include "settings/UnicodeLowercase.h"
#include "settings/UnicodeUppercase.h"

namespace kelvane::settings {
namespace {

std::string quoted(std::string_view text) {
    if (text.empty()) {
        return "\"\"";
    }
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\\' || c == '"' || c == '\'') {
            out += '\\';
        }
        out += c;
    }
    return out;
}

// "1.2.3.4" → "1.2.3": at most three components.
std::string truncatedVersion(std::string_view version) {
    std::size_t dots = 0;
    for (std::size_t i = 0; i < version.size(); ++i) {
        if (version[i] == '.' && ++dots == 3) {
            return std::string(version.substr(0, i));
        }
    }
    return std::string(version);
}

std::string withoutOperand(std::string_view name, std::string value) {
    if (name == "lower") {
        return lowercasedUnicode(value);
    }
    if (name == "upper") {
        return uppercasedUnicode(value);
    }
    if (name == "identifier") {
        return cIdentifier(value);
    }
    if (name == "rfc1034identifier") {
        return rfc1034Identifier(value);
    }
    if (name == "c99extidentifier") {
        return c99ExtendedIdentifier(value);
    }
    if (name == "quote") {
        return quoted(value);
    }
    if (name == "not") {
        return value == "YES" ? "NO" : "YES";
    }
    if (name == "truncatedversion") {
        return truncatedVersion(value);
    }
    // An empty path has no parts to take.
    if (value.empty()) {
        return value;
    }
    if (name == "dir") {
        return paths::directory(value);
    }
    if (name == "file") {
        return paths::file(value);
    }
    if (name == "base") {
        return paths::base(value);
    }
    if (name == "suffix") {
        return paths::suffix(value);
    }
    if (name == "standardizepath") {
        return paths::standardized(value);
    }
    return value;
}

std::string withOperand(std::string_view name, std::string value, const std::string& operand) {
    if (name == "isancestor") {
        return paths::isAncestor(value, operand) ? "YES" : "NO";
    }
    if (value.empty()) {
        return value;
    }
    if (name == "dir") {
        return paths::withDirectory(value, operand);
    }
    if (name == "file") {
        return paths::withFile(value, operand);
    }
    if (name == "base") {
        return paths::withBase(value, operand);
    }
    if (name == "suffix") {
        return paths::withSuffix(value, operand);
    }
    if (name == "relativeto") {
        return paths::relativeTo(value, operand);
    }
    return value;
}

} // namespace

std::string applyOperator(std::string_view name, std::string value,
                          const std::optional<std::string>& operand) {
    return operand ? withOperand(name, std::move(value), *operand)
                   : withoutOperand(name, std::move(value));
}

} // namespace kelvane::settings
