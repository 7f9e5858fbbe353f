#pragma once

#include "scanner/EventLoop.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <vector>

namespace kelvane {

// An event loop on a clock that only moves when a task runs: a paced scan
// finishes in microseconds, and every pause it asked for can be asserted.
class VirtualClockLoop final : public EventLoop {
public:
    void post(std::chrono::milliseconds delay, std::function<void()> task) override;

    // Advances the clock to the earliest task's deadline and runs it; false
    // when nothing is queued.
    bool runNext();
    // Runs tasks until none is left, or `limit` have run (so a test of a
    // loop that keeps posting fails instead of hanging). Returns how many ran.
    std::size_t runUntilIdle(std::size_t limit = 100'000);

    // Virtual time since the loop was made.
    [[nodiscard]] std::chrono::milliseconds now() const noexcept override { return now_; }
    // Every delay passed to post(), in posting order.
    [[nodiscard]] const std::vector<std::chrono::milliseconds>& delays() const noexcept {
        return delays_;
    }
    [[nodiscard]] std::size_t pendingTasks() const noexcept { return tasks_.size(); }

private:
    std::chrono::milliseconds now_{0};
    std::vector<std::chrono::milliseconds> delays_;
    // A multimap keeps equal deadlines in insertion order.
    std::multimap<std::chrono::milliseconds, std::function<void()>> tasks_;
};

} // namespace kelvane
