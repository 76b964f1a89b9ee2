#pragma once
// The environment of a benchmark that writes the library: the manual clock and queues, in-memory defaults,
// and real files in a temporary folder that is removed afterwards.
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/Environment.h"
#include "platform/linux/PosixFiles.h"
#include "platform/testing/ManualQueues.h"
#include "platform/testing/MemoryDefaults.h"

struct BenchEnvironment {
    kro::testing::ManualClock clock;
    kro::testing::ManualQueue queue{clock};
    kro::PosixFiles files;
    kro::testing::MemoryDefaults defaults;
    kro::NotificationCenter notifications;
    std::string root;

    BenchEnvironment() {
        char folder[] = "/tmp/kro-bench-XXXXXX";
        root = mkdtemp(folder);
        kro::Environment environment;
        environment.clock = &clock;
        environment.mainQueue = &queue;
        environment.backgroundQueue = &queue;
        environment.files = &files;
        environment.defaults = &defaults;
        environment.notifications = &notifications;
        environment.paths = kro::Paths::underRoot(root);
        kro::installEnvironment(environment);
    }
    ~BenchEnvironment() { std::filesystem::remove_all(root); }
};
