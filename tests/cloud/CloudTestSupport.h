#pragma once
#include <gtest/gtest.h>

#include <string>

#include "cloud/CloudSync.h"
#include "library/CloudHook.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "library/UserUndo.h"

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

// A fresh library, undo history and sync, with the pipeline's last step going to the sync.
inline void resetLibraryAndSync() {
    User::resetShared();
    UserUndo::shared().reset();
    CloudSync::shared().reset();
    setCloudUpdate([](const std::string& file, const std::string& function, int line) {
        CloudSync::shared().updateCloudKit(file, function, line);
    });
}

}  // namespace kro::testing
