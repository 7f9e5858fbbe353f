#pragma once

#include "diagnostics/DoctorIssue.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// What a finding is, apart from where it sits: a baseline holds these, so an
// edit elsewhere in a file, or a finding moving to another configuration,
// does not bring it back.
namespace kelvane::adoption {

// One finding of an issue and its key.
struct IssueFinding {
    // The index of its "• " line in the issue's description; none when the
    // whole issue is one finding.
    std::optional<std::size_t> line;
    nlohmann::json key;
};

// The findings of `issue`, which check `checkID` reported. Read as built an
// issue lists one "• " line per finding, keyed by the check and the line's
// text without the configurations it ends with. Otherwise the issue is one
// finding, keyed by the check, the issue's id, its affected targets and the
// (key, value) pair of each evidence item. A passing result has none.
[[nodiscard]] std::vector<IssueFinding> issueFindings(const std::string& checkID,
                                                      const DoctorIssue& issue);

// A finding line as its key holds it: "• " and a trailing " (Debug,
// Release)" naming only the issue's configurations are dropped.
[[nodiscard]] std::string findingText(std::string_view line,
                                      const std::vector<std::string>& configurations);

} // namespace kelvane::adoption
