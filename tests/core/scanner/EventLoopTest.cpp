#include "scanner/SleepingLoop.h"
#include "scanner/VirtualClockLoop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelvane {
namespace {

using std::chrono::milliseconds;

// Both loops must run tasks by deadline, and tasks due together in posting
// order, including tasks that running tasks post.
template <class Loop> std::vector<std::string> runOrder(Loop& loop) {
    std::vector<std::string> order;
    loop.post(milliseconds{2}, [&] { order.push_back("late"); });
    loop.post(milliseconds{0}, [&] {
        order.push_back("first");
        loop.post(milliseconds{0}, [&] { order.push_back("posted by first"); });
    });
    loop.post(milliseconds{0}, [&] { order.push_back("second"); });
    loop.runUntilIdle();
    return order;
}

TEST(EventLoop, RunsByDeadlineThenPostingOrder) {
    const std::vector<std::string> expected{"first", "second", "posted by first", "late"};
    VirtualClockLoop virtualLoop;
    EXPECT_EQ(runOrder(virtualLoop), expected);
    SleepingLoop sleepingLoop;
    EXPECT_EQ(runOrder(sleepingLoop), expected);
}

TEST(VirtualClockLoop, AdvancesOnlyToTheDeadlineOfWhatRuns) {
    VirtualClockLoop loop;
    std::vector<long long> times;
    loop.post(milliseconds{150}, [&] {
        times.push_back(loop.now().count());
        loop.post(milliseconds{150}, [&] { times.push_back(loop.now().count()); });
    });
    EXPECT_EQ(loop.now(), milliseconds{0});
    EXPECT_TRUE(loop.runNext());
    EXPECT_EQ(loop.pendingTasks(), 1U);
    EXPECT_EQ(loop.runUntilIdle(), 1U);
    EXPECT_FALSE(loop.runNext());
    EXPECT_EQ(times, (std::vector<long long>{150, 300}));
    EXPECT_EQ(loop.delays(), (std::vector<milliseconds>{milliseconds{150}, milliseconds{150}}));
}

TEST(VirtualClockLoop, StopsAtTheLimitInsteadOfHanging) {
    VirtualClockLoop loop;
    std::function<void()> forever = [&] {
        loop.post(milliseconds{1}, forever);
    };
    loop.post(milliseconds{1}, forever);
    EXPECT_EQ(loop.runUntilIdle(5), 5U);
    EXPECT_EQ(loop.pendingTasks(), 1U);
}

} // namespace
} // namespace kelvane
