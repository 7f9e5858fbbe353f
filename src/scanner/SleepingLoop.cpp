#include "scanner/SleepingLoop.h"

#include <thread>
#include <utility>

namespace kelvane {

void SleepingLoop::post(std::chrono::milliseconds delay, std::function<void()> task) {
    tasks_.emplace(std::chrono::steady_clock::now() + delay, std::move(task));
}

std::chrono::milliseconds SleepingLoop::now() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

void SleepingLoop::runUntilIdle() {
    while (!tasks_.empty()) {
        auto next = tasks_.begin();
        const auto deadline = next->first;
        std::function<void()> task = std::move(next->second);
        tasks_.erase(next);
        if (deadline > std::chrono::steady_clock::now()) {
            std::this_thread::sleep_until(deadline);
        }
        task();
    }
}

} // namespace kelvane
