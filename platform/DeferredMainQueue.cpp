#include "platform/DeferredMainQueue.h"

namespace kro {
namespace {
class InertTimer final : public Timer {
public:
    void invalidate() override {}
    bool isValid() const override { return false; }
};
}  // namespace

void DeferredMainQueue::post(Task task, Seconds) { tasks_.push_back(std::move(task)); }

std::unique_ptr<Timer> DeferredMainQueue::scheduleRepeating(Seconds, Task) { return std::make_unique<InertTimer>(); }

void DeferredMainQueue::drain() {
    while (!tasks_.empty()) {
        auto task = std::move(tasks_.front());
        tasks_.pop_front();
        task();
    }
}

}  // namespace kro
