#include "scanner/VirtualClockLoop.h"

#include <utility>

namespace kelvane {

void VirtualClockLoop::post(std::chrono::milliseconds delay, std::function<void()> task) {
    delays_.push_back(delay);
    tasks_.emplace(now_ + delay, std::move(task));
}

bool VirtualClockLoop::runNext() {
    if (tasks_.empty()) {
        return false;
    }
    auto next = tasks_.begin();
    now_ = next->first;
    std::function<void()> task = std::move(next->second);
    tasks_.erase(next);
    task();
    return true;
}

std::size_t VirtualClockLoop::runUntilIdle(std::size_t limit) {
    std::size_t ran = 0;
    while (ran < limit && runNext()) {
        ++ran;
    }
    return ran;
}

} // namespace kelvane
