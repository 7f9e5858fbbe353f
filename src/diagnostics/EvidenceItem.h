#pragma once

#include "diagnostics/EvidenceSource.h"
#include "diagnostics/RecordHash.h"
#include "model/SettingOrigin.h"

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
    // As built only: where the value was set (an .xcconfig line, a level of
    // the project file, a property list) so a developer can go to it.
    std::optional<SettingOrigin> origin{};
    friend bool operator==(const EvidenceItem&, const EvidenceItem&) = default;
};

[[nodiscard]] std::size_t hashValue(const EvidenceItem& item) noexcept;

} // namespace kelvane

template <> struct std::hash<kelvane::EvidenceItem> : kelvane::RecordHash<kelvane::EvidenceItem> {};
