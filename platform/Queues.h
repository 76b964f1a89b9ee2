#pragma once
#include <chrono>
#include <functional>
#include <memory>

namespace kro {

using Seconds = std::chrono::duration<double>;
using Task = std::function<void()>;

// A repeating timer; invalidating it (or destroying it) stops further ticks.
class Timer {
public:
    virtual ~Timer() = default;
    virtual void invalidate() = 0;
    virtual bool isValid() const = 0;
};

// The main thread's queue: every record belongs to it.
class MainQueue {
public:
    virtual ~MainQueue() = default;
    // Runs `task` on the main thread after `delay` (0: on the next turn of the loop). Safe from any thread.
    virtual void post(Task task, Seconds delay = Seconds(0)) = 0;
    // Runs `tick` every `interval` on the main thread until the timer is invalidated.
    virtual std::unique_ptr<Timer> scheduleRepeating(Seconds interval, Task tick) = 0;
};

// Work that leaves the main thread (the undo insertion, network calls).
class BackgroundQueue {
public:
    virtual ~BackgroundQueue() = default;
    virtual void post(Task task, Seconds delay = Seconds(0)) = 0;
};

}  // namespace kro
