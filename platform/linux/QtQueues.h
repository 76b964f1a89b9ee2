#pragma once
#include "platform/Queues.h"

namespace kro {

// The main queue on the Qt event loop of the main thread. Posting is safe from any thread.
class QtMainQueue final : public MainQueue {
public:
    void post(Task task, Seconds delay = Seconds(0)) override;
    std::unique_ptr<Timer> scheduleRepeating(Seconds interval, Task tick) override;
};

}  // namespace kro
