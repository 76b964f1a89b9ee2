#pragma once
#include <memory>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/NotificationCenter.h"
#include "platform/Paths.h"
#include "platform/Queues.h"
#include "platform/UserDefaults.h"

namespace kro {

// The system as the logic sees it. The agent installs the Linux services at start; tests install fakes.
// The singletons of the program reach the system only through here.
struct Environment {
    Clock* clock = nullptr;
    MainQueue* mainQueue = nullptr;
    BackgroundQueue* backgroundQueue = nullptr;
    Files* files = nullptr;
    UserDefaults* defaults = nullptr;
    NotificationCenter* notifications = nullptr;
    Paths paths;
};

// The installed environment. Using it before one is installed is a programming error and aborts.
Environment& env();
void installEnvironment(const Environment& environment);

}  // namespace kro
