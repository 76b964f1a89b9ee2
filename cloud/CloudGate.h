#pragma once
// The minimum interval between two cloud calls of one kind. Each call that goes on stores the time; one
// that comes too soon is blocked with a log line.
#include <optional>
#include <string>

#include "platform/Clock.h"

namespace kro {

class CloudGate {
public:
    // `function` is the name the log lines carry.
    explicit CloudGate(std::string function, double minimumSeconds = 1.0)
        : function_(std::move(function)), minimumSeconds_(minimumSeconds) {}

    // True (and the time stored) when the last allowed call is at least the minimum ago, or there was none.
    bool allow();
    void reset() { last_.reset(); }

private:
    std::string function_;
    double minimumSeconds_;
    std::optional<TimePoint> last_;
};

}  // namespace kro
