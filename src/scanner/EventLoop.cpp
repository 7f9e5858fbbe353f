#include "scanner/EventLoop.h"

namespace kelvane {

EventLoop::~EventLoop() = default;

} // namespace kelvane
