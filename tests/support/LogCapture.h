#pragma once
// Shared by the test folders: the program's log lines, as a test reads them.
#include <gtest/gtest.h>

#include <string>

#include "library/Sherlog.h"

namespace kro::testing {

// The log lines written while it lives, messages only.
class LogCapture {
public:
    LogCapture() {
        Sherlog::configure({0}, SherlogPrint::message, SherlogEnvironment{1} | SherlogEnvironment::standardOutput);
        ::testing::internal::CaptureStdout();
    }
    ~LogCapture() {
        if (!taken_) ::testing::internal::GetCapturedStdout();
        Sherlog::configure({6}, SherlogPrint::message, SherlogEnvironment{1});
    }
    std::string text() {
        taken_ = true;
        return ::testing::internal::GetCapturedStdout();
    }

private:
    bool taken_ = false;
};

}  // namespace kro::testing
