#pragma once

#include "diagnostics/DoctorIssue.h"
#include "scanner/CheckProgress.h"
#include "scanner/EventLoop.h"
#include "scanner/ProjectScanner.h"
#include "scanner/ScanState.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace kelvane {

// The state every screen is drawn from, and the operations the screens call.
// It owns the scanner; all of its work happens on the event loop it was
// given, one task at a time, so it needs no lock.
class ScanViewModel {
public:
    // Hears of every change of state before it takes effect: `next` is the
    // state about to be set, while state() still returns the current one.
    using Observer = std::function<void(const ScanState& next)>;
    using ObserverID = std::size_t;

    // How long applying a fix takes, though it changes nothing.
    static constexpr std::chrono::milliseconds kFixDelay{500};

    // `loop` and `failureLog` must outlive the view model; the pause before
    // each check stays at 150 ms unless a front-end asks for less. Scans that are
    // still running when it goes away finish without touching it.
    ScanViewModel(EventLoop& loop, std::ostream& failureLog,
                  std::chrono::milliseconds checkPause = ProjectScanner::kDefaultCheckPause);
    // With a scanner of one's own choosing (another registry, say); it must
    // run on the same loop.
    ScanViewModel(EventLoop& loop, ProjectScanner scanner);

    ScanViewModel(const ScanViewModel&) = delete;
    ScanViewModel& operator=(const ScanViewModel&) = delete;
    ~ScanViewModel();

    [[nodiscard]] const ScanState& state() const noexcept { return state_; }
    [[nodiscard]] const ProjectScanner& scanner() const noexcept { return scanner_; }
    // Scans from now on read projects with `loader` (empty: literally) and
    // run `checks`; a scan already running finishes with what it had.
    void setReading(std::vector<AnyCheck> checks, ProjectScanner::ProjectLoader loader) {
        scanner_.setChecks(std::move(checks));
        scanner_.setLoader(std::move(loader));
    }

    ObserverID addObserver(Observer observer);
    void removeObserver(ObserverID id);

    // Switches to `scanning` with the initial rows before it returns; the
    // scan itself runs on the loop and cannot be cancelled.
    void startScan(const std::string& projectURL);
    // Back to `idle`. A scan still running is left to finish and its success
    // dropped.
    void reset();
    // Scans the completed result's project again; does nothing in any other
    // state.
    void rescan();
    // Offered on screen but never writes anything: calls `onFinished` at once
    // for an issue without a fix, otherwise after kFixDelay on the loop.
    // State is left exactly as it was. The loop has no way to interrupt the
    // wait; one torn down first simply never calls back.
    void applyFix(const DoctorIssue& issue, std::function<void()> onFinished);
    // Where the scanner reports each finished check: completes its row and
    // sets the next pending one running. Ignored outside `scanning` and for
    // an id no row has.
    void updateProgress(const std::string& checkID, const std::optional<DoctorIssue>& issue);

    // The nine rows in their order, then a row for each as-built check
    // `checks` holds; the first running, the others pending.
    [[nodiscard]] static std::vector<CheckProgress>
    initialProgress(const std::vector<AnyCheck>& checks = makeCheckRegistry());

private:
    void finishScan(const std::string& projectPath, std::chrono::milliseconds start,
                    ScanCompletion completion);
    void setState(ScanState next);

    EventLoop& loop_;
    ProjectScanner scanner_;
    ScanState state_{IdleState{}};
    std::vector<std::pair<ObserverID, Observer>> observers_;
    ObserverID nextObserverID_ = 0;
    // Scan callbacks hold a weak reference to this, so a scan that outlives
    // the view model finds it gone instead of dangling.
    std::shared_ptr<ScanViewModel*> self_;
};

} // namespace kelvane
