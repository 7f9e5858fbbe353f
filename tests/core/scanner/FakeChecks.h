#pragma once

#include "checks/DoctorCheck.h"
#include "scanner/VirtualClockLoop.h"

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelvane::testing {

// What the fakes and the progress handler did, with the virtual time of each
// event, e.g. "150 run a", "150 progress a -> a".
using Journal = std::vector<std::string>;

inline std::string stamp(const VirtualClockLoop& loop) {
    return std::to_string(loop.now().count()) + " ";
}

// A check double: returns an issue of a given severity (id = its own id),
// returns none, or throws.
struct FakeCheck {
    enum class Behaviour { issue, none, failure };

    std::string checkID;
    Behaviour behaviour = Behaviour::issue;
    Severity severity = Severity::success;
    std::string failureText{};
    std::shared_ptr<Journal> journal{};
    const VirtualClockLoop* loop = nullptr;

    [[nodiscard]] std::string id() const { return checkID; }
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext&) const {
        if (journal && loop) {
            journal->push_back(stamp(*loop) + "run " + checkID);
        }
        switch (behaviour) {
        case Behaviour::issue:
            return DoctorIssue{.id = checkID, .severity = severity, .title = "T " + checkID};
        case Behaviour::none:
            return std::nullopt;
        case Behaviour::failure:
            throw std::runtime_error(failureText);
        }
        return std::nullopt;
    }
};

static_assert(DoctorCheck<FakeCheck>);

} // namespace kelvane::testing
