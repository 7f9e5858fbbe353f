#pragma once

#include "model/SettingOrigin.h"
#include "plist/Value.h"
#include "settings/Assignment.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kelvane::settings {

// The values a condition parameter has while a target is evaluated, such as
// {"config": "Release", "sdk": "iphoneos18.0"}. An unbound parameter matches
// only the pattern "*".
using Bindings = std::map<std::string, std::string, std::less<>>;

// A setting or text after expansion.
struct Resolved {
    std::string value;
    // The assignment that gave the value (for a text: of the first
    // reference in it); none when nothing assigned the setting.
    std::optional<SettingOrigin> origin;
    // Some assignment, possibly an empty one, set the setting (for a text:
    // some reference in it named a set setting or an `extra` value).
    bool assigned = false;
    // Why the value cannot be known: it depends on a placeholder, or a bound
    // was hit. When set, `value` must not be used.
    std::optional<std::string> unknownReason;
    friend bool operator==(const Resolved&, const Resolved&) = default;
};

// One target's settings in one configuration: every assignment from the
// lowest level (defaults) to the highest (target settings), in push order,
// evaluated as Xcode evaluates them: late binding, `$(inherited)` and
// self-reference as the next lower matching assignment, references `$(X)`,
// `${X}`, `$[X]`, bare `$X`, nesting, operators, cycles resolving to the next
// lower value, and conditions matched against `bindings` with fnmatch
// patterns. Reference depth and expanded size are bounded.
class SettingsScope {
public:
    SettingsScope(std::vector<Assignment> stack, Bindings bindings);

    // The setting's value as a string-typed setting (operators apply to the
    // whole text).
    [[nodiscard]] Resolved evaluate(std::string_view name) const;
    // Any text, such as an Info.plist string, expanded in this scope; `extra`
    // gives values for names no assignment sets (CFBundleIdentifier while an
    // Info.plist is expanded). They are final text, not expanded again, and
    // they win over placeholders: a file Kelvane could not read never sets
    // CFBundleIdentifier.
    [[nodiscard]] Resolved
    expand(std::string_view text,
           const std::map<std::string, std::string, std::less<>>& extra = {}) const;

    [[nodiscard]] const Bindings& bindings() const noexcept { return bindings_; }

private:
    class Evaluation;

    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const noexcept {
            return std::hash<std::string_view>{}(name);
        }
    };

    // Position in stack_ of the newest assignment below `below` that decides
    // `name`: a matching assignment of it, or a placeholder covering it.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name, std::size_t below) const;
    [[nodiscard]] bool conditionsMatch(const Assignment& assignment) const;

    std::vector<Assignment> stack_;
    Bindings bindings_;
    // Positions in stack_ of every assignment of a name, lowest first;
    // placeholders naming one setting included.
    std::unordered_map<std::string, std::vector<std::size_t>, NameHash, std::equal_to<>> byName_;
    // Names Xcode defines itself, which no placeholder covers.
    std::unordered_set<std::string, NameHash, std::equal_to<>> builtInNames_;
    // Positions of placeholders that cover every setting, lowest first.
    std::vector<std::size_t> placeholders_;
};

// Appends one buildSettings dictionary of project.pbxproj to `stack` as
// Xcode pushes it: keys in byte order (so `A` precedes `A[sdk=…]`), invalid
// names dropped, conditions split off the key, arrays joined with spaces
// (spaces, quotes and backslashes inside an element escaped with a
// backslash), non-text values skipped. Every assignment gets `origin`.
void appendBuildSettings(std::vector<Assignment>& stack, const plist::Dictionary& buildSettings,
                         const SettingOrigin& origin);

// Whether `pattern` (fnmatch: `*`, `?`, `[…]`, case-sensitive, whole text)
// matches `text`.
[[nodiscard]] bool patternMatches(std::string_view pattern, std::string_view text) noexcept;

} // namespace kelvane::settings
