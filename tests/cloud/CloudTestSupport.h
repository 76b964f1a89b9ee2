#pragma once
#include <gtest/gtest.h>

#include <string>

#include "cloud/CloudSync.h"
#include "library/CloudHook.h"
#include "library/User.h"
#include "library/UserUndo.h"
#include "tests/support/LogCapture.h"

namespace kro::testing {

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
