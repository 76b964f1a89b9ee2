#include "cli/DisplayCheck.h"

#include <cstdlib>

namespace kro::cli {
namespace {

bool isSet(const char* name) {
    const char* value = std::getenv(name);
    return value && *value;
}

}  // namespace

std::optional<std::string> missingXDisplayMessage() {
    if (isSet("DISPLAY")) return std::nullopt;
    if (isSet("WAYLAND_DISPLAY")) {
        return "kro: Kro needs an X display, and this Wayland session offers none (DISPLAY is not set).\n"
               "     Turn on XWayland in the compositor's settings and log in again; Kro then runs through it.\n";
    }
    return "kro: the agent needs an X11 display, and DISPLAY is not set.\n"
           "     Run it in a desktop session, or on a virtual display: xvfb-run -a kro\n";
}

}  // namespace kro::cli
