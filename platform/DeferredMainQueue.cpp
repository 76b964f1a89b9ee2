#include "platform/DeferredMainQueue.h"

namespace kro {
namespace {
class InertTimer final : public Timer {
public:
    void invalidate() override {}
    bool isValid() const override { return false; }
};
}  // namespace

void DeferredMainQueue::post(Task task, Seconds) {
    {
        std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    arrived_.notify_all();
}

std::unique_ptr<Timer> DeferredMainQueue::scheduleRepeating(Seconds, Task) { return std::make_unique<InertTimer>(); }

// Runs the first task without holding the lock, so the task may post more.
bool DeferredMainQueue::runOne(std::unique_lock<std::mutex>& lock) {
    if (tasks_.empty()) return false;
    auto task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    task();
    lock.lock();
    return true;
}

void DeferredMainQueue::drain() {
    std::unique_lock lock(mutex_);
    while (runOne(lock)) {
    }
}

bool DeferredMainQueue::runUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(mutex_);
    while (true) {
        while (runOne(lock)) {
        }
        lock.unlock();
        if (done()) return true;
        lock.lock();
        if (!arrived_.wait_until(lock, end, [this] { return !tasks_.empty(); })) {
            lock.unlock();
            return done();
        }
    }
}

}  // namespace kro
