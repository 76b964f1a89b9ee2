#include "platform/WorkerQueue.h"

#include <algorithm>

namespace kro {

WorkerQueue::WorkerQueue() : thread_([this] { run(); }) {}

WorkerQueue::~WorkerQueue() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

void WorkerQueue::post(Task task, Seconds delay) {
    {
        std::lock_guard lock(mutex_);
        const auto due = std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::steady_clock::duration>(delay);
        items_.push_back({due, nextOrder_++, std::move(task)});
    }
    wake_.notify_all();
}

void WorkerQueue::run() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        if (items_.empty()) {
            wake_.wait(lock);
            continue;
        }
        auto next = std::min_element(items_.begin(), items_.end(), [](const Item& a, const Item& b) {
            return a.due != b.due ? a.due < b.due : a.order < b.order;
        });
        if (next->due > std::chrono::steady_clock::now()) {
            // A copy: waiting unlocks, and a post meanwhile may move the items, and the one `next` names.
            const auto due = next->due;
            wake_.wait_until(lock, due);
            continue;
        }
        Task task = std::move(next->task);
        items_.erase(next);
        lock.unlock();
        task();
        lock.lock();
    }
}

}  // namespace kro
