#include <gtest/gtest.h>

#include "platform/testing/ManualQueues.h"

using namespace kro;
using namespace kro::testing;

TEST(ManualQueue, RunsWorkInTimeOrderAndTimersUntilInvalidated) {
    ManualClock clock;
    ManualQueue queue(clock);
    std::vector<std::string> log;
    queue.post([&] { log.push_back("late"); }, Seconds(2));
    queue.post([&] { log.push_back("now"); });
    auto timer = queue.scheduleRepeating(Seconds(1), [&] { log.push_back("tick"); });
    queue.advance(Seconds(3));
    EXPECT_EQ(log, (std::vector<std::string>{"now", "tick", "late", "tick", "tick"}));
    timer->invalidate();
    EXPECT_EQ(queue.activeTimerCount(), 0u);
    queue.advance(Seconds(5));
    EXPECT_EQ(log.size(), 5u);
}
