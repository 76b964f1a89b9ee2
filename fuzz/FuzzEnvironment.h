#pragma once
// The environment the fuzz targets run in: a real clock and a notification centre, installed once per
// process. Records read the clock when they are made; stores post as they decode.
#include "platform/Environment.h"

inline void installFuzzEnvironment() {
    static const bool installed = [] {
        static kro::SystemClock clock;
        static kro::NotificationCenter notifications;
        kro::Environment environment;
        environment.clock = &clock;
        environment.notifications = &notifications;
        kro::installEnvironment(environment);
        return true;
    }();
    (void)installed;
}
