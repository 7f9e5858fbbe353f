#include "settings/SettingsEvaluation.h"

#include "settings/MacroOperators.h"

#include <algorithm>

namespace kelvane::settings {
namespace {

// Xcode itself has no depth limit; real chains are a few references deep,
// values a few hundred bytes. The bounds keep a hostile project from
// exhausting the stack, memory or time: each evaluation may read at most
// 64 MiB of values in all, however often they are referenced.
constexpr std::size_t kMaxDepth = 256;
constexpr std::size_t kMaxSize = std::size_t{1} << 20;
constexpr std::size_t kMaxWork = std::size_t{64} << 20;
// Past this many names an expansion is not remembered for reuse (rare, and
// then only slower).
constexpr std::size_t kMaxReads = 64;
constexpr std::size_t kNoFrame = static_cast<std::size_t>(-1);

constexpr bool isNameStart(char c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}
constexpr bool isBareNameChar(char c) noexcept {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '.';
}

constexpr char closerFor(char opener) noexcept {
    return opener == '(' ? ')' : opener == '{' ? '}' : ']';
}

class DepthGuard {
public:
    explicit DepthGuard(std::size_t& depth) : depth_(++depth) {}
    ~DepthGuard() { --depth_; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;

private:
    std::size_t& depth_;
};

} // namespace

Resolved SettingsScope::Evaluation::setting(std::string_view name) {
    const auto position = scope_.find(name, scope_.stack_.size());
    if (!position) {
        return {};
    }
    Resolved result;
    result.origin = scope_.stack_[*position].origin;
    result.assigned = true;
    auto value = valueAt(*position);
    if (unknown_) {
        result.unknownReason = std::move(unknown_);
    } else {
        result.value = std::move(*value);
    }
    return result;
}

Resolved SettingsScope::Evaluation::text(std::string_view text) {
    std::string out;
    std::size_t at = 0;
    expand(text, at, 0, &out);
    Resolved result;
    result.origin = firstOrigin_;
    result.assigned = resolvedAny_;
    if (unknown_) {
        result.unknownReason = std::move(unknown_);
    } else {
        result.value = std::move(out);
    }
    return result;
}

void SettingsScope::Evaluation::fail(std::string reason) {
    if (!unknown_) {
        unknown_ = std::move(reason);
    }
}

bool SettingsScope::Evaluation::append(std::string& out, std::string_view piece) {
    if (piece.size() > kMaxSize - out.size()) {
        fail("its expansion is longer than " + std::to_string(kMaxSize >> 20) + " MiB");
        return false;
    }
    out += piece;
    return true;
}

void SettingsScope::Evaluation::charge(std::size_t bytes) {
    work_ += bytes + 1;
    if (work_ > kMaxWork) {
        fail("its expansion reads more than " + std::to_string(kMaxWork >> 20) + " MiB of values");
    }
}

void SettingsScope::Evaluation::expand(std::string_view text, std::size_t& at, char closer,
                                       std::string* out) {
    const auto stopsHere = [closer](char c) {
        return closer != 0 && (c == closer || c == ':');
    };
    while (at < text.size() && !failed()) {
        if (stopsHere(text[at])) {
            return;
        }
        if (text[at] != '$' || at + 1 == text.size()) {
            std::size_t end = at + 1;
            while (end < text.size() && text[end] != '$' && !stopsHere(text[end])) {
                ++end;
            }
            if (out != nullptr && !append(*out, text.substr(at, end - at))) {
                return;
            }
            at = end;
            continue;
        }
        const char next = text[at + 1];
        if (next == '(' || next == '{' || next == '[') {
            reference(text, at, out);
        } else if (isNameStart(next)) {
            bareReference(text, at, out);
        } else {
            // `$$` is one dollar sign; a `$` before anything else is itself.
            if (out != nullptr && !append(*out, "$")) {
                return;
            }
            at += next == '$' ? 2 : 1;
        }
    }
}

void SettingsScope::Evaluation::reference(std::string_view text, std::size_t& at,
                                          std::string* out) {
    if (depth_ >= kMaxDepth) {
        fail("its references nest deeper than " + std::to_string(kMaxDepth) + " levels");
        return;
    }
    const DepthGuard guard(depth_);
    const std::size_t start = at;
    const char closer = closerFor(text[at + 1]);
    at += 2;
    std::string name;
    expand(text, at, closer, out != nullptr ? &name : nullptr);
    std::optional<std::string> value;
    if (out != nullptr && !failed()) {
        value = resolve(name);
    }
    applyOperators(text, at, closer, out != nullptr, value);
    if (failed() || out == nullptr) {
        if (at < text.size()) {
            ++at;
        }
        return;
    }
    if (at >= text.size()) {
        // Never closed: Xcode flags it and keeps the text as it is.
        (void)append(*out, text.substr(start));
        return;
    }
    ++at;
    if (value) {
        (void)append(*out, *value);
    }
}

void SettingsScope::Evaluation::bareReference(std::string_view text, std::size_t& at,
                                              std::string* out) {
    std::size_t end = at + 1;
    while (end < text.size() && isBareNameChar(text[end])) {
        ++end;
    }
    const std::string_view name = text.substr(at + 1, end - at - 1);
    const std::string_view written = text.substr(at, end - at);
    at = end;
    if (out == nullptr) {
        return;
    }
    // `$FOO.app` stays as written unless FOO.app is a setting.
    if (!isExpanding(name) && !scope_.find(name, scope_.stack_.size()) && !extra_.contains(name)) {
        (void)append(*out, written);
        return;
    }
    if (depth_ >= kMaxDepth) {
        fail("its references nest deeper than " + std::to_string(kMaxDepth) + " levels");
        return;
    }
    const DepthGuard guard(depth_);
    if (const auto value = resolve(name)) {
        (void)append(*out, *value);
    }
}

void SettingsScope::Evaluation::applyOperators(std::string_view text, std::size_t& at, char closer,
                                               bool live, std::optional<std::string>& value) {
    while (at < text.size() && text[at] == ':' && !failed()) {
        ++at;
        std::size_t end = at;
        while (end < text.size() && text[end] != '=' && text[end] != ':' && text[end] != closer) {
            ++end;
        }
        const std::string_view name = text.substr(at, end - at);
        at = end;
        if (at < text.size() && text[at] == '=') {
            ++at;
            // Only `default` applies to an undefined value, and only when
            // there is nothing: its operand is not evaluated otherwise, so
            // an unknown fallback does not make a known value unknown.
            const bool wanted =
                live && (name == "default" ? !value || value->empty() : value.has_value());
            std::string operand;
            expand(text, at, closer, wanted ? &operand : nullptr);
            if (!wanted || failed()) {
                continue;
            }
            if (name == "default") {
                value = std::move(operand);
            } else {
                charge(value->size());
                value = applyOperator(name, std::move(*value), operand);
            }
        } else if (live && value) {
            charge(value->size());
            value = applyOperator(name, std::move(*value), std::nullopt);
        }
        if (value && value->size() > kMaxSize) {
            fail("its expansion is longer than " + std::to_string(kMaxSize >> 20) + " MiB");
        }
    }
}

bool SettingsScope::Evaluation::isExpanding(std::string_view name) const {
    return std::any_of(frames_.begin(), frames_.end(), [&](const Frame& frame) {
        return scope_.stack_[frame.position].name == name;
    });
}

void SettingsScope::Evaluation::noteReads(const std::vector<std::string_view>& names) {
    if (frames_.empty()) {
        return;
    }
    Frame& top = frames_.back();
    for (const std::string_view name : names) {
        if (top.tooManyReads) {
            return;
        }
        if (std::find(top.reads.begin(), top.reads.end(), name) == top.reads.end()) {
            top.reads.push_back(name);
            top.tooManyReads = top.reads.size() > kMaxReads;
        }
    }
}

std::optional<std::string> SettingsScope::Evaluation::resolve(std::string_view name) {
    if (!frames_.empty() && (name == "inherited" || name == "value")) {
        name = scope_.stack_[frames_.back().position].name;
    }
    for (std::size_t i = frames_.size(); i-- > 0;) {
        const std::size_t expanding = frames_[i].position;
        if (scope_.stack_[expanding].name == name) {
            Frame& top = frames_.back();
            top.lowestFrameUsed = std::min(top.lowestFrameUsed, i);
            charge(0);
            const auto lower = scope_.find(name, expanding);
            return lower ? valueAt(*lower) : std::nullopt;
        }
    }
    auto position = scope_.find(name, scope_.stack_.size());
    const auto extra = extra_.find(name);
    if (extra != extra_.end() && (!position || scope_.stack_[*position].isPlaceholder())) {
        resolvedAny_ = true;
        charge(extra->second.size());
        return extra->second;
    }
    if (!position) {
        charge(0);
        return std::nullopt;
    }
    const Assignment& assignment = scope_.stack_[*position];
    resolvedAny_ = true;
    if (frames_.empty() && !firstOrigin_) {
        firstOrigin_ = assignment.origin;
    }
    auto value = valueAt(*position);
    noteReads({std::string_view(assignment.name)});
    return value;
}

std::optional<std::string> SettingsScope::Evaluation::valueAt(std::size_t position) {
    const Assignment& assignment = scope_.stack_[position];
    if (assignment.isPlaceholder()) {
        fail(*assignment.unknownReason);
        return std::nullopt;
    }
    if (const auto known = computed_.find(position); known != computed_.end()) {
        const auto& reads = known->second.reads;
        if (std::none_of(reads.begin(), reads.end(),
                         [this](std::string_view read) { return isExpanding(read); })) {
            charge(known->second.value.size());
            noteReads(reads);
            return known->second.value;
        }
    }
    frames_.push_back({position, kNoFrame, {}, false});
    std::string out;
    std::size_t at = 0;
    expand(assignment.value, at, 0, &out);
    Frame done = std::move(frames_.back());
    frames_.pop_back();
    if (failed()) {
        return std::nullopt;
    }
    charge(out.size());
    // The result can be reused while the names it read are not being
    // expanded, unless it depended on an assignment expanded further out.
    if (done.lowestFrameUsed >= frames_.size() && !done.tooManyReads) {
        computed_[position] = {out, done.reads};
    }
    if (!frames_.empty()) {
        Frame& parent = frames_.back();
        parent.lowestFrameUsed = std::min(parent.lowestFrameUsed, done.lowestFrameUsed);
        parent.tooManyReads = parent.tooManyReads || done.tooManyReads;
        noteReads(done.reads);
    }
    return out;
}

} // namespace kelvane::settings
