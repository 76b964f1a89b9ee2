#pragma once
// A main and background queue for tests whose work answers from other threads (a real server's replies):
// posted work waits until the test thread runs it in `runUntil`.
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "platform/Queues.h"

namespace kro::testing {

class ThreadedQueue final : public MainQueue, public BackgroundQueue {
public:
    void post(Task task, Seconds) override {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        wake_.notify_all();
    }
    std::unique_ptr<Timer> scheduleRepeating(Seconds, Task) override { return nullptr; }

    // Runs posted work until `done` holds; false when it did not within the time.
    bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!done()) {
            std::unique_lock lock(mutex_);
            if (!wake_.wait_until(lock, end, [this] { return !tasks_.empty(); })) return false;
            auto task = std::move(tasks_.front());
            tasks_.pop_front();
            lock.unlock();
            task();
        }
        return true;
    }

private:
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Task> tasks_;
};

}  // namespace kro::testing
