#include "scanner/ScanViewModel.h"

#include "model/FilePath.h"
#include "scanner/CheckTitles.h"

#include <algorithm>

namespace kelvane {

ScanViewModel::ScanViewModel(EventLoop& loop, std::ostream& failureLog,
                             std::chrono::milliseconds checkPause)
    : ScanViewModel(loop, ProjectScanner(loop, failureLog, makeCheckRegistry(), checkPause)) {}

ScanViewModel::ScanViewModel(EventLoop& loop, ProjectScanner scanner)
    : loop_(loop), scanner_(std::move(scanner)), self_(std::make_shared<ScanViewModel*>(this)) {}

ScanViewModel::~ScanViewModel() = default;

ScanViewModel::ObserverID ScanViewModel::addObserver(Observer observer) {
    const ObserverID id = nextObserverID_++;
    observers_.emplace_back(id, std::move(observer));
    return id;
}

void ScanViewModel::removeObserver(ObserverID id) {
    std::erase_if(observers_, [id](const auto& entry) { return entry.first == id; });
}

std::vector<CheckProgress> ScanViewModel::initialProgress(const std::vector<AnyCheck>& checks) {
    // The nine rows always show, in their order, whatever the registry; the
    // as-built checks add theirs after them when the registry has them.
    std::vector<CheckTitle> shown(kCheckTitles.begin(), kCheckTitles.end());
    for (const CheckTitle& extra : kAsBuiltCheckTitles) {
        if (std::any_of(checks.begin(), checks.end(),
                        [&](const AnyCheck& check) { return check.id() == extra.id; })) {
            shown.push_back(extra);
        }
    }
    std::vector<CheckProgress> rows;
    rows.reserve(shown.size());
    for (const CheckTitle& entry : shown) {
        rows.push_back(
            CheckProgress{.id = std::string(entry.id),
                          .title = std::string(entry.title),
                          .status = rows.empty() ? CheckStatus::running : CheckStatus::pending});
    }
    return rows;
}

void ScanViewModel::startScan(const std::string& projectURL) {
    setState(ScanningState{.projectPath = projectURL, .checkProgress = initialProgress(scanner_.checks())});
    // The scanner parses in a task of its own, so this is the moment the
    // scan starts on the loop's clock.
    const std::chrono::milliseconds start = loop_.now();
    const std::weak_ptr<ScanViewModel*> self = self_;
    scanner_.scan(
        projectURL,
        [self](const std::string& checkID, const std::optional<DoctorIssue>& issue) {
            if (const auto model = self.lock()) {
                (*model)->updateProgress(checkID, issue);
            }
        },
        [self, projectURL, start](ScanCompletion completion) {
            if (const auto model = self.lock()) {
                (*model)->finishScan(projectURL, start, std::move(completion));
            }
        });
}

void ScanViewModel::finishScan(const std::string& projectPath, std::chrono::milliseconds start,
                               ScanCompletion completion) {
    if (const auto* failure = std::get_if<ScanError>(&completion)) {
        // A failure always shows, even over a state the user has moved on to.
        setState(ErrorState{.message = failure->what()});
        return;
    }
    const auto* scanning = std::get_if<ScanningState>(&state_);
    if (scanning == nullptr) {
        return; // the user went back meanwhile
    }
    const std::chrono::duration<double> duration = loop_.now() - start;
    // The rows are the ones on screen; with overlapping scans they may have
    // been filled by both, and the path is this scan's own, not the state's.
    ProjectScanResult result{
        .projectPath = projectPath,
        .projectName = std::string(path::stem(path::withoutTrailingSlash(projectPath))),
        .issues = std::move(std::get<ScanReport>(completion).issues),
        .scanDuration = duration.count(),
        .checkProgress = scanning->checkProgress,
        .project = std::get<ScanReport>(completion).project,
    };
    setState(CompletedState{.result = std::move(result)});
}

void ScanViewModel::reset() {
    setState(IdleState{});
}

void ScanViewModel::rescan() {
    if (const auto* completed = std::get_if<CompletedState>(&state_)) {
        // startScan replaces the state that holds the path, so copy it first.
        const std::string projectPath = completed->result.projectPath;
        startScan(projectPath);
    }
}

void ScanViewModel::applyFix(const DoctorIssue& issue, std::function<void()> onFinished) {
    if (!issue.fix) {
        onFinished();
        return;
    }
    loop_.post(kFixDelay, std::move(onFinished));
}

void ScanViewModel::updateProgress(const std::string& checkID,
                                   const std::optional<DoctorIssue>& issue) {
    const auto* scanning = std::get_if<ScanningState>(&state_);
    if (scanning == nullptr) {
        return;
    }
    std::vector<CheckProgress> rows = scanning->checkProgress;
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const CheckProgress& each) { return each.id == checkID; });
    if (row == rows.end()) {
        return;
    }
    row->status = CheckStatus::completed;
    row->issue = issue;
    // Rows never go back, so the first pending row is the check that runs
    // next and at most one row is ever running.
    const auto next = std::find_if(rows.begin(), rows.end(), [](const CheckProgress& each) {
        return each.status == CheckStatus::pending;
    });
    if (next != rows.end()) {
        next->status = CheckStatus::running;
    }
    setState(ScanningState{.projectPath = scanning->projectPath, .checkProgress = std::move(rows)});
}

void ScanViewModel::setState(ScanState next) {
    // Observers may add or remove observers while they are told.
    const auto observers = observers_;
    for (const auto& [id, observer] : observers) {
        observer(next);
    }
    state_ = std::move(next);
}

} // namespace kelvane
