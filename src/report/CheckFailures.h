#pragma once

#include "checks/DoctorCheck.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kelvane::report {

// The text of each check's failure, by check id. The view model shows a
// failed check as finished without an issue; reports also say why.
using CheckFailures = std::map<std::string, std::string>;

// `checks`, each noting its failure in `failures` before the scanner sees
// it throw and logs it.
[[nodiscard]] std::vector<AnyCheck> recordingFailures(std::vector<AnyCheck> checks,
                                                      std::shared_ptr<CheckFailures> failures);

} // namespace kelvane::report
