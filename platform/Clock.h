#pragma once
#include <chrono>

namespace kro {

using TimePoint = std::chrono::system_clock::time_point;

// Every "now" of the program comes from here, so tests can move time by hand.
class Clock {
public:
    virtual ~Clock() = default;
    virtual TimePoint now() const = 0;
};

class SystemClock final : public Clock {
public:
    TimePoint now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace kro
