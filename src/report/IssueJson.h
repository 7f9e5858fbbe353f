#pragma once

#include "diagnostics/DoctorIssue.h"

#include <nlohmann/json.hpp>

namespace kelvane::report {

// The diagnostic records as the scan document shows them. A variant is an
// object whose "kind" is its case name, with the labelled payload fields
// beside it; an evidence source also carries its display text as "location".
[[nodiscard]] nlohmann::ordered_json toJson(const EntitlementValue& value);
[[nodiscard]] nlohmann::ordered_json toJson(const FixAction& action);
[[nodiscard]] nlohmann::ordered_json toJson(const EvidenceSource& source);
[[nodiscard]] nlohmann::ordered_json toJson(const EvidenceItem& item);
[[nodiscard]] nlohmann::ordered_json toJson(const TargetRef& target);
[[nodiscard]] nlohmann::ordered_json toJson(const DoctorFix& fix);
[[nodiscard]] nlohmann::ordered_json toJson(const DoctorIssue& issue);

} // namespace kelvane::report
