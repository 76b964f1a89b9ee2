#pragma once
#include <deque>

#include "platform/Queues.h"

namespace kro {

// The main queue of a one-shot command (no event loop): work posted is kept, in order, and run by `drain`
// before the command ends. Delays are not waited for, and repeating timers never tick.
class DeferredMainQueue final : public MainQueue {
public:
    void post(Task task, Seconds delay = Seconds(0)) override;
    std::unique_ptr<Timer> scheduleRepeating(Seconds interval, Task tick) override;
    void drain();

private:
    std::deque<Task> tasks_;
};

}  // namespace kro
