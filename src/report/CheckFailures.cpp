#include "report/CheckFailures.h"

#include <exception>
#include <utility>

namespace kelvane::report {

namespace {

struct RecordingCheck {
    AnyCheck check;
    std::shared_ptr<CheckFailures> failures;

    [[nodiscard]] std::string id() const { return check.id(); }
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const {
        try {
            return check.run(context);
        } catch (const std::exception& error) {
            (*failures)[check.id()] = error.what();
            throw;
        } catch (...) {
            // The scanner's own words for an error without a text.
            (*failures)[check.id()] = "unknown error";
            throw;
        }
    }
};

} // namespace

std::vector<AnyCheck> recordingFailures(std::vector<AnyCheck> checks,
                                        std::shared_ptr<CheckFailures> failures) {
    std::vector<AnyCheck> recording;
    recording.reserve(checks.size());
    for (AnyCheck& check : checks) {
        recording.emplace_back(RecordingCheck{std::move(check), failures});
    }
    return recording;
}

} // namespace kelvane::report
