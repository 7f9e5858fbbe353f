#pragma once

#include "settings/SettingsScope.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvane::settings {

using ExtraValues = std::map<std::string, std::string, std::less<>>;

// One evaluation in a scope: the assignments being expanded, what has been
// computed so far, and the bounds spent. Lives for one evaluate or expand.
class SettingsScope::Evaluation {
public:
    Evaluation(const SettingsScope& scope, const ExtraValues& extra)
        : scope_(scope), extra_(extra) {}

    [[nodiscard]] Resolved setting(std::string_view name);
    [[nodiscard]] Resolved text(std::string_view text);

private:
    // An assignment being expanded. A reference to a name that is being
    // expanded means that name's next lower value: that is how Xcode breaks
    // cycles, and what `$(inherited)` and self-reference mean.
    struct Frame {
        std::size_t position;
        // Lowest frame index whose position the expansion depended on.
        std::size_t lowestFrameUsed;
        // Names looked up as not being expanded; if one of them is being
        // expanded when the result is wanted again, it would differ.
        std::vector<std::string_view> reads;
        bool tooManyReads = false;
    };
    struct Computed {
        std::string value;
        std::vector<std::string_view> reads;
    };

    // Expands text[at…] into `out` (nullptr: only skips over it) up to its
    // end, or, inside a reference (`closer` set), up to `:` or the closer.
    void expand(std::string_view text, std::size_t& at, char closer, std::string* out);
    void reference(std::string_view text, std::size_t& at, std::string* out);
    void bareReference(std::string_view text, std::size_t& at, std::string* out);
    // The value of the setting `name` at this point of the evaluation;
    // nullopt when undefined or unknown.
    std::optional<std::string> resolve(std::string_view name);
    std::optional<std::string> valueAt(std::size_t position);
    // Applies the `:op` and `:op=operand` parts after a reference's name;
    // when not `live` only skips over them.
    void applyOperators(std::string_view text, std::size_t& at, char closer, bool live,
                        std::optional<std::string>& value);

    // Records names the innermost expansion looked up.
    void noteReads(const std::vector<std::string_view>& names);
    [[nodiscard]] bool isExpanding(std::string_view name) const;
    // Appends within the size bound; false (and the evaluation failed) past it.
    [[nodiscard]] bool append(std::string& out, std::string_view piece);
    // Counts the bytes of values handled against the work bound.
    void charge(std::size_t bytes);
    void fail(std::string reason);
    [[nodiscard]] bool failed() const noexcept { return unknown_.has_value(); }

    const SettingsScope& scope_;
    const ExtraValues& extra_;
    std::vector<Frame> frames_;
    std::unordered_map<std::size_t, Computed> computed_;
    std::optional<std::string> unknown_;
    std::size_t depth_ = 0;
    std::size_t work_ = 0;
    std::optional<SettingOrigin> firstOrigin_;
    bool resolvedAny_ = false;
};

} // namespace kelvane::settings
