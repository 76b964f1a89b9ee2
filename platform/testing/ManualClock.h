#pragma once
#include "platform/Clock.h"

namespace kro::testing {

// A clock that moves only when told to. Starts at 2026-01-01 00:00:00 UTC.
class ManualClock final : public Clock {
public:
    TimePoint now() const override { return now_; }
    void set(TimePoint time) { now_ = time; }
    void advance(std::chrono::duration<double> by) {
        now_ += std::chrono::duration_cast<std::chrono::system_clock::duration>(by);
    }

private:
    TimePoint now_ = std::chrono::system_clock::from_time_t(1767225600);
};

}  // namespace kro::testing
