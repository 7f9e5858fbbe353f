#pragma once

#include "diagnostics/EvidenceSource.h"
#include "diagnostics/RecordHash.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace kelvane {

// One fact a check read.
struct EvidenceItem {
    EvidenceSource source{};
    std::string key{};
    std::string value{};
    std::optional<std::string> expectedValue{};
    friend bool operator==(const EvidenceItem&, const EvidenceItem&) = default;
};

[[nodiscard]] std::size_t hashValue(const EvidenceItem& item) noexcept;

} // namespace kelvane

template <> struct std::hash<kelvane::EvidenceItem> : kelvane::RecordHash<kelvane::EvidenceItem> {};
