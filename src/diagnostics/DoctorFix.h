#pragma once

#include "diagnostics/FixAction.h"
#include "diagnostics/FixSafety.h"
#include "diagnostics/RecordHash.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kelvane {

struct FixStep {
    std::string description{};
    FixAction action{};
    friend bool operator==(const FixStep&, const FixStep&) = default;
};

// A proposed remedy: ordered steps under one heading.
struct DoctorFix {
    std::string summary{};
    FixSafety safety = FixSafety::manualOnly;
    std::vector<FixStep> steps{};
    // Caution shown before the fix is applied.
    std::optional<std::string> warningMessage{};
    friend bool operator==(const DoctorFix&, const DoctorFix&) = default;
};

[[nodiscard]] std::size_t hashValue(const FixStep& step) noexcept;
[[nodiscard]] std::size_t hashValue(const DoctorFix& fix) noexcept;

} // namespace kelvane

template <> struct std::hash<kelvane::FixStep> : kelvane::RecordHash<kelvane::FixStep> {};
template <> struct std::hash<kelvane::DoctorFix> : kelvane::RecordHash<kelvane::DoctorFix> {};
