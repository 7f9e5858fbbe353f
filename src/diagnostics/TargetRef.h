#pragma once

#include "diagnostics/RecordHash.h"
#include "model/TargetContext.h"
#include "model/TargetType.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace kelvane {

// A target as a result names it: copied out of the model so that results do
// not hold on to the project they came from.
struct TargetRef {
    std::string name{};
    TargetType type = TargetType::unknown;
    std::optional<std::string> bundleID{};
    friend bool operator==(const TargetRef&, const TargetRef&) = default;
};

[[nodiscard]] TargetRef makeTargetRef(const TargetContext& target);

[[nodiscard]] std::size_t hashValue(const TargetRef& target) noexcept;

} // namespace kelvane

template <> struct std::hash<kelvane::TargetRef> : kelvane::RecordHash<kelvane::TargetRef> {};
