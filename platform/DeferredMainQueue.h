#pragma once
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "platform/Queues.h"

namespace kro {

// The main queue of a one-shot command (no event loop): work posted is kept, in order, and run by `drain`
// before the command ends, or by `runUntil` while a command waits for an answer from another thread.
// Delays are not waited for, and repeating timers never tick. Safe to post to from any thread; tasks run
// on the thread that drains.
class DeferredMainQueue final : public MainQueue {
public:
    void post(Task task, Seconds delay = Seconds(0)) override;
    std::unique_ptr<Timer> scheduleRepeating(Seconds interval, Task tick) override;
    void drain();
    // Runs posted work as it arrives until `done` holds; false when the limit came first.
    bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds limit);

private:
    bool runOne(std::unique_lock<std::mutex>& lock);

    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<Task> tasks_;
};

}  // namespace kro
