#include <gtest/gtest.h>

#include <thread>

#include "platform/DeferredMainQueue.h"
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

// A one-shot command waits for answers that another thread posts; what it runs, it runs on its own thread.
TEST(DeferredMainQueue, RunsWorkPostedFromAnotherThreadUntilDone) {
    kro::DeferredMainQueue queue;
    std::vector<int> ran;
    const auto me = std::this_thread::get_id();
    std::thread network([&] {
        for (int i = 0; i < 3; ++i) queue.post([&ran, i, me] { EXPECT_EQ(std::this_thread::get_id(), me); ran.push_back(i); });
    });
    EXPECT_TRUE(queue.runUntil([&] { return ran.size() == 3; }, std::chrono::seconds(10)));
    network.join();
    EXPECT_EQ(ran, (std::vector<int>{0, 1, 2}));
    EXPECT_FALSE(queue.runUntil([] { return false; }, std::chrono::milliseconds(50)));
}
