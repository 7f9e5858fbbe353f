#include "app/QtEventLoop.h"

#include <QTimer>

namespace kelvane::app {

QtEventLoop::QtEventLoop() {
    clock_.start();
}

void QtEventLoop::post(std::chrono::milliseconds delay, std::function<void()> task) {
    // A coarse timer may fire up to 5 % early; the pause is a minimum.
    QTimer::singleShot(delay, Qt::PreciseTimer, &context_, std::move(task));
}

std::chrono::milliseconds QtEventLoop::now() const {
    return std::chrono::milliseconds(clock_.elapsed());
}

} // namespace kelvane::app
