#include "platform/testing/ManualQueues.h"

#include <algorithm>

namespace kro::testing {

struct ManualQueue::TimerState {
    bool valid = true;
    Task tick;
    std::chrono::system_clock::duration step{};
};

class ManualQueue::ManualTimer final : public Timer {
public:
    explicit ManualTimer(std::shared_ptr<TimerState> state) : state_(std::move(state)) {}
    ~ManualTimer() override { state_->valid = false; }
    void invalidate() override { state_->valid = false; }
    bool isValid() const override { return state_->valid; }

private:
    std::shared_ptr<TimerState> state_;
};

ManualQueue::~ManualQueue() = default;

void ManualQueue::schedule(TimePoint due, Task task) { items_.push_back({due, nextOrder_++, std::move(task)}); }

void ManualQueue::post(Task task, Seconds delay) {
    schedule(clock_.now() + std::chrono::duration_cast<std::chrono::system_clock::duration>(delay), std::move(task));
}

std::unique_ptr<Timer> ManualQueue::scheduleRepeating(Seconds interval, Task tick) {
    auto state = std::make_shared<TimerState>();
    state->tick = std::move(tick);
    state->step = std::chrono::duration_cast<std::chrono::system_clock::duration>(interval);
    timers_.push_back(state);
    scheduleTick(state);
    return std::make_unique<ManualTimer>(state);
}

// The timer object owns its state; queued ticks hold it weakly, so a dropped timer frees everything.
void ManualQueue::scheduleTick(const std::weak_ptr<TimerState>& weak) {
    auto state = weak.lock();
    if (!state) return;
    schedule(clock_.now() + state->step, [this, weak] {
        auto alive = weak.lock();
        if (!alive || !alive->valid) return;
        alive->tick();
        if (alive->valid) scheduleTick(weak);
    });
}

bool ManualQueue::runNextDueBy(TimePoint limit) {
    auto next = std::min_element(items_.begin(), items_.end(), [](const Item& a, const Item& b) {
        return a.due != b.due ? a.due < b.due : a.order < b.order;
    });
    if (next == items_.end() || next->due > limit) return false;
    Item item = std::move(*next);
    items_.erase(next);
    if (item.due > clock_.now()) clock_.set(item.due);
    item.task();
    return true;
}

void ManualQueue::runDue() {
    while (runNextDueBy(clock_.now())) {
    }
}

void ManualQueue::advance(Seconds by) {
    const auto target = clock_.now() + std::chrono::duration_cast<std::chrono::system_clock::duration>(by);
    while (runNextDueBy(target)) {
    }
    clock_.set(target);
}

size_t ManualQueue::activeTimerCount() const {
    return static_cast<size_t>(std::count_if(timers_.begin(), timers_.end(), [](const auto& weak) {
        auto state = weak.lock();
        return state && state->valid;
    }));
}

}  // namespace kro::testing
