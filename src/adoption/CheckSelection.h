#pragma once

#include "checks/DoctorCheck.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvane::adoption {

// The first of `ids` that names none of `known`, if any.
[[nodiscard]] std::optional<std::string> unknownCheck(const std::vector<std::string>& ids,
                                                      const std::vector<std::string>& known);

// The registry, in its order, cut to `only` (when not empty) and without
// `skip`. The ids are assumed known.
[[nodiscard]] std::vector<AnyCheck> selectChecks(std::vector<AnyCheck> registry,
                                                 const std::vector<std::string>& only,
                                                 const std::vector<std::string>& skip);

} // namespace kelvane::adoption
