#pragma once

#include "checks/DoctorCheck.h"
#include "diagnostics/DoctorIssue.h"
#include "parser/ProjectParser.h"
#include "scanner/CheckRegistry.h"
#include "scanner/EventLoop.h"
#include "scanner/ScanError.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

namespace kelvane {

// How one check of a scan ended.
struct CheckOutcome {
    std::string checkID{};
    // None when the check found nothing to report or failed.
    std::optional<DoctorIssue> issue{};
    // The text of the error a failed check threw.
    std::optional<std::string> failure{};
    friend bool operator==(const CheckOutcome&, const CheckOutcome&) = default;
};

struct ScanReport {
    // By severity, error first; equal severities keep registry order.
    std::vector<DoctorIssue> issues{};
    // One per check, in registry order.
    std::vector<CheckOutcome> checks{};
    // The project the checks read, so reports can name files and lines
    // without loading it again.
    std::shared_ptr<const ProjectContext> project{};
    friend bool operator==(const ScanReport&, const ScanReport&) = default;
};

// A scan ends with a report, or with the error that kept it from running
// any check.
using ScanCompletion = std::variant<ScanReport, ScanError>;

// Loads a project and runs the registered checks over it, one per turn of
// the event loop with a pause before each, so a display can show every check
// as running. A check that throws does not end the scan: its failure is
// written as one line to the failure log and the scan goes on.
class ProjectScanner {
public:
    // Turns a project location into the model the checks read; throws with
    // a user-facing text when it cannot.
    using ProjectLoader = std::function<ProjectContext(const std::string& projectURL)>;
    using ProgressHandler =
        std::function<void(const std::string& checkID, const std::optional<DoctorIssue>& issue)>;
    using CompletionHandler = std::function<void(ScanCompletion)>;

    // Long enough for a progress display to show each check as running.
    static constexpr std::chrono::milliseconds kDefaultCheckPause{150};

    // `loop` and `failureLog` must outlive every scan started here. Without
    // a loader, projects are read literally.
    ProjectScanner(EventLoop& loop, std::ostream& failureLog,
                   std::vector<AnyCheck> checks = makeCheckRegistry(),
                   std::chrono::milliseconds checkPause = kDefaultCheckPause,
                   ProjectLoader loader = {});

    // Starts a scan of an .xcodeproj or .xcworkspace and returns at once; all
    // work happens in tasks on the loop. `onProgress` (may be empty) hears of
    // every check in registry order right after it ran; `onComplete` is
    // called once, last.
    void scan(const std::string& projectURL, ProgressHandler onProgress,
              CompletionHandler onComplete) const;

    // How later scans read projects; an empty loader reads them literally.
    // A scan already running keeps the loader it started with.
    void setLoader(ProjectLoader loader);
    // The checks later scans run, in their order.
    void setChecks(std::vector<AnyCheck> checks) { checks_ = std::move(checks); }

    [[nodiscard]] const std::vector<AnyCheck>& checks() const noexcept { return checks_; }
    [[nodiscard]] std::chrono::milliseconds checkPause() const noexcept { return checkPause_; }

private:
    EventLoop& loop_;
    std::ostream& failureLog_;
    ProjectLoader loader_;
    std::vector<AnyCheck> checks_;
    std::chrono::milliseconds checkPause_;
};

} // namespace kelvane
