#pragma once

#include "checks/DoctorCheck.h"
#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

// Check tests read as tables: small projects named after the outcome they
// produce, each with the issue it must produce, run through one helper.
namespace kelvane::test {

// A target as fixtures write it: a name and a type, plus only the settings
// the case is about.
class Target {
public:
    Target(std::string name, TargetType type);
    Target& bundleID(std::string value);
    Target& deploymentTarget(std::string value);
    Target& team(std::string value);
    Target& signStyle(std::string value);
    Target& frameworks(std::vector<std::string> paths);
    operator TargetContext() const { return target_; } // NOLINT: fixtures list Targets

private:
    TargetContext target_;
};

[[nodiscard]] ProjectContext project(std::vector<TargetContext> targets);

// The check must return nothing.
struct NoIssue {};
// Only these three fields are compared: for outcomes whose texts are fixed.
struct Headline {
    std::string id;
    Severity severity;
    std::string title;
};
using ExpectedOutcome = std::variant<NoIssue, Headline, DoctorIssue>;

struct OutcomeCase {
    std::string name;
    ProjectContext project;
    ExpectedOutcome expected;
};

// Runs every case through `check`. Whole issues are compared through a
// readable rendering first, so a failure shows which line of which field
// differs, and then as values, so nothing the rendering leaves out slips by.
void expectOutcomes(const AnyCheck& check, const std::vector<OutcomeCase>& cases);

// Every field of the issue, one fact per line.
[[nodiscard]] std::string describe(const DoctorIssue& issue);

} // namespace kelvane::test
