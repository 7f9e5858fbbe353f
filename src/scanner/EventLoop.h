#pragma once

#include <chrono>
#include <functional>

namespace kelvane {

// Where the scanner waits. Time is not the core's business: the window plugs
// in its toolkit's timer, the terminal a loop that sleeps, tests a virtual
// clock. A loop runs each posted task once, no earlier than `delay` after it
// was posted; tasks due at the same moment run in the order they were posted.
class EventLoop {
public:
    EventLoop() = default;
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    virtual ~EventLoop();

    virtual void post(std::chrono::milliseconds delay, std::function<void()> task) = 0;
    // The loop's clock, from an arbitrary origin: only differences mean
    // something (how long a scan took, say).
    [[nodiscard]] virtual std::chrono::milliseconds now() const = 0;
};

} // namespace kelvane
