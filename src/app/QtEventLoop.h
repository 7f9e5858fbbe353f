#pragma once

#include "scanner/EventLoop.h"

#include <QElapsedTimer>
#include <QObject>

namespace kelvane::app {

// The scanner's pauses as Qt timers: between two checks control returns to
// the Qt event loop, which is when the window repaints.
class QtEventLoop final : public EventLoop {
public:
    QtEventLoop();

    void post(std::chrono::milliseconds delay, std::function<void()> task) override;
    [[nodiscard]] std::chrono::milliseconds now() const override;

private:
    // Tasks are bound to this object, so none runs after the loop is gone.
    QObject context_;
    QElapsedTimer clock_;
};

} // namespace kelvane::app
