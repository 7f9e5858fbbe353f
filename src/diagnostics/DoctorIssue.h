#pragma once

#include "diagnostics/DoctorFix.h"
#include "diagnostics/EvidenceItem.h"
#include "diagnostics/RecordHash.h"
#include "diagnostics/Severity.h"
#include "diagnostics/TargetRef.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kelvane {

// One check's result. `id` identifies it within a scan: every check returns
// at most one issue.
struct DoctorIssue {
    std::string id{};
    Severity severity = Severity::success;
    std::string title{};
    std::string description{};
    std::string impact{};
    std::vector<EvidenceItem> evidence{};
    std::vector<TargetRef> affectedTargets{};
    std::optional<DoctorFix> fix{};
    // As built only: the configurations the findings hold in, in the
    // project's order. Empty when the project was read literally.
    std::vector<std::string> configurations{};
    friend bool operator==(const DoctorIssue&, const DoctorIssue&) = default;
};

[[nodiscard]] std::size_t hashValue(const DoctorIssue& issue) noexcept;

} // namespace kelvane

template <> struct std::hash<kelvane::DoctorIssue> : kelvane::RecordHash<kelvane::DoctorIssue> {};
