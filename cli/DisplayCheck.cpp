#include "cli/DisplayCheck.h"

#include <cstdlib>

namespace kro::cli {
namespace {

bool isSet(const char* name) {
    const char* value = std::getenv(name);
    return value && *value;
}

}  // namespace

std::optional<std::string> missingDisplayMessage() {
    if (isSet("DISPLAY") || isSet("WAYLAND_DISPLAY")) return std::nullopt;
    return "kro: the agent needs a desktop session, and neither WAYLAND_DISPLAY nor DISPLAY is set.\n"
           "     Run it in a desktop session, or on a virtual display: xvfb-run -a kro\n";
}

}  // namespace kro::cli
