#pragma once
#include "platform/Environment.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/ManualQueues.h"
#include "platform/testing/MemoryDefaults.h"
#include "platform/testing/MemoryFiles.h"

namespace kro::testing {

// Installs fakes for every service of the environment for the life of this object.
// Paths live under "/home/test"; the main and background queues are one ManualQueue,
// so `queue.advance(...)` runs both in time order.
struct TestEnvironment {
    ManualClock clock;
    ManualQueue queue{clock};
    MemoryFiles files;
    MemoryDefaults defaults;
    NotificationCenter notifications;
    Paths paths = Paths::underRoot("/home/test");

    TestEnvironment() {
        notifications.setRecording(true);
        Environment e;
        e.clock = &clock;
        e.mainQueue = &queue;
        e.backgroundQueue = &queue;
        e.files = &files;
        e.defaults = &defaults;
        e.notifications = &notifications;
        e.paths = paths;
        installEnvironment(e);
    }
};

}  // namespace kro::testing
