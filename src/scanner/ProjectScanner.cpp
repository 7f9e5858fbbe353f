#include "scanner/ProjectScanner.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <utility>

namespace kelvane {

namespace {

// Everything one scan needs between turns of the loop. Each scan has its own,
// so scans that overlap do not disturb each other.
struct ScanRun {
    EventLoop& loop;
    std::ostream& failureLog;
    ProjectScanner::ProjectLoader loader;
    std::vector<AnyCheck> checks;
    std::chrono::milliseconds checkPause;
    std::string projectURL;
    ProjectScanner::ProgressHandler onProgress;
    ProjectScanner::CompletionHandler onComplete;
    ProjectContext context{};
    ScanReport report{};
};

void runCheck(const std::shared_ptr<ScanRun>& run, std::size_t index);

void scheduleCheck(const std::shared_ptr<ScanRun>& run, std::size_t index) {
    if (index == run->checks.size()) {
        std::vector<DoctorIssue>& issues = run->report.issues;
        std::stable_sort(
            issues.begin(), issues.end(),
            [](const DoctorIssue& a, const DoctorIssue& b) { return a.severity > b.severity; });
        run->report.project = std::make_shared<const ProjectContext>(std::move(run->context));
        run->onComplete(std::move(run->report));
        return;
    }
    run->loop.post(run->checkPause, [run, index] { runCheck(run, index); });
}

void runCheck(const std::shared_ptr<ScanRun>& run, std::size_t index) {
    const AnyCheck& check = run->checks[index];
    CheckOutcome outcome{.checkID = check.id()};
    try {
        outcome.issue = check.run(run->context);
    } catch (const std::exception& error) {
        outcome.failure = error.what();
    } catch (...) {
        outcome.failure = "unknown error";
    }
    if (outcome.failure) {
        run->failureLog << "Check " << outcome.checkID << " failed: " << *outcome.failure << '\n';
        run->failureLog.flush();
    } else if (outcome.issue) {
        run->report.issues.push_back(*outcome.issue);
    }
    run->report.checks.push_back(outcome);
    if (run->onProgress) {
        run->onProgress(outcome.checkID, outcome.issue);
    }
    scheduleCheck(run, index + 1);
}

void parseAndStart(const std::shared_ptr<ScanRun>& run) {
    try {
        run->context = run->loader(run->projectURL);
    } catch (const std::exception& error) {
        // Parser errors, unreadable files and malformed property lists all
        // carry their user-facing text in what().
        run->onComplete(ScanError::parsingFailed(error.what()));
        return;
    }
    scheduleCheck(run, 0);
}

} // namespace

ProjectScanner::ProjectScanner(EventLoop& loop, std::ostream& failureLog,
                               std::vector<AnyCheck> checks, std::chrono::milliseconds checkPause,
                               ProjectLoader loader)
    : loop_(loop), failureLog_(failureLog), checks_(std::move(checks)), checkPause_(checkPause) {
    setLoader(std::move(loader));
}

void ProjectScanner::setLoader(ProjectLoader loader) {
    loader_ = loader ? std::move(loader) : [](const std::string& projectURL) {
        return ProjectParser().parseProject(projectURL);
    };
}

void ProjectScanner::scan(const std::string& projectURL, ProgressHandler onProgress,
                          CompletionHandler onComplete) const {
    auto run = std::make_shared<ScanRun>(ScanRun{
        .loop = loop_,
        .failureLog = failureLog_,
        .loader = loader_,
        .checks = checks_,
        .checkPause = checkPause_,
        .projectURL = projectURL,
        .onProgress = std::move(onProgress),
        .onComplete = std::move(onComplete),
    });
    // The parse runs on the loop too, so a caller is never called back
    // before scan() has returned.
    loop_.post(std::chrono::milliseconds{0}, [run] { parseAndStart(run); });
}

} // namespace kelvane
