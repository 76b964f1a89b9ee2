#pragma once
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/Queues.h"

namespace kro {

// A background queue on one worker thread, running each task at its due time, in due order.
// Tasks still waiting when the queue is destroyed are dropped.
class WorkerQueue final : public BackgroundQueue {
public:
    WorkerQueue();
    ~WorkerQueue() override;
    void post(Task task, Seconds delay = Seconds(0)) override;

private:
    struct Item {
        std::chrono::steady_clock::time_point due;
        unsigned long order;
        Task task;
    };
    void run();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::vector<Item> items_;
    unsigned long nextOrder_ = 0;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace kro
