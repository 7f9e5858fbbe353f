#pragma once

#include "scanner/EventLoop.h"

#include <chrono>
#include <functional>
#include <map>

namespace kelvane {

// The terminal's event loop: runs the posted tasks on the calling thread,
// sleeping until each one is due. A task posted with no delay runs without
// sleeping, so an unpaced scan never waits.
class SleepingLoop final : public EventLoop {
public:
    void post(std::chrono::milliseconds delay, std::function<void()> task) override;
    [[nodiscard]] std::chrono::milliseconds now() const override;

    // Returns when no task is left, including those posted by running tasks.
    void runUntilIdle();

private:
    // A multimap keeps equal deadlines in insertion order.
    std::multimap<std::chrono::steady_clock::time_point, std::function<void()>> tasks_;
};

} // namespace kelvane
