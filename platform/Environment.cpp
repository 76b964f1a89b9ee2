#include "platform/Environment.h"

#include <cstdio>
#include <cstdlib>

namespace kro {
namespace {
Environment gEnvironment;
bool gInstalled = false;
}  // namespace

Environment& env() {
    if (!gInstalled) {
        std::fputs("kro: the environment was used before it was installed\n", stderr);
        std::abort();
    }
    return gEnvironment;
}

void installEnvironment(const Environment& environment) {
    gEnvironment = environment;
    gInstalled = true;
}

}  // namespace kro
