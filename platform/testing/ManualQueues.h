#pragma once
#include <memory>
#include <vector>

#include "platform/Queues.h"
#include "platform/testing/ManualClock.h"

namespace kro::testing {

// Queues and timers run by hand against a ManualClock: `advance` moves time and runs, in time order,
// everything that fell due. Used for both the main and the background queue in tests.
class ManualQueue final : public MainQueue, public BackgroundQueue {
public:
    explicit ManualQueue(ManualClock& clock) : clock_(clock) {}
    ~ManualQueue() override;

    void post(Task task, Seconds delay = Seconds(0)) override;
    std::unique_ptr<Timer> scheduleRepeating(Seconds interval, Task tick) override;

    // Runs what is due now, including work that it posts for now.
    void runDue();
    // Moves the clock forward by `by`, running each item at its own time.
    void advance(Seconds by);
    size_t pendingCount() const { return items_.size(); }
    size_t activeTimerCount() const;

private:
    struct Item {
        TimePoint due;
        unsigned long order;
        Task task;
    };
    struct TimerState;
    class ManualTimer;

    void schedule(TimePoint due, Task task);
    void scheduleTick(const std::weak_ptr<TimerState>& state);
    bool runNextDueBy(TimePoint limit);

    ManualClock& clock_;
    std::vector<Item> items_;
    std::vector<std::weak_ptr<TimerState>> timers_;
    unsigned long nextOrder_ = 0;
};

}  // namespace kro::testing
