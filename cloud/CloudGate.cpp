#include "cloud/CloudGate.h"

#include <cstdio>

#include "library/Sherlog.h"
#include "platform/Environment.h"

namespace kro {
namespace {

std::string seconds(double value, const char* format) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

}  // namespace

bool CloudGate::allow() {
    const auto now = env().clock->now();
    if (!last_) {
        Sherlog::print("First CloudKit call, allowed.", SherlogLevel::debug, "Kro/CloudKit", function_, __LINE__);
        last_ = now;
        return true;
    }
    const double elapsed = std::chrono::duration<double>(now - *last_).count();
    const std::string tail = seconds(elapsed, "%.2f") + "s since last call (minimum " +
                             seconds(minimumSeconds_, "%.1f") + ")";
    if (elapsed < minimumSeconds_) {
        Sherlog::print("CloudKit call blocked, only " + tail, SherlogLevel::info, "Kro/CloudKit", function_, __LINE__);
        return false;
    }
    Sherlog::print("CloudKit call allowed, " + tail, SherlogLevel::debug, "Kro/CloudKit", function_, __LINE__);
    last_ = now;
    return true;
}

}  // namespace kro
