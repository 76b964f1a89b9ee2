#pragma once
// The agent speaks X11 only (the loupe, the global keys and the capture are X requests), so before it starts
// anything, it and `kro open` tell a person at once when there is no X display, and why.
#include <optional>
#include <string>

namespace kro::cli {

// Nothing when DISPLAY names a display; otherwise the lines to print, saying what to do about it. A Wayland
// session without XWayland is named as such, since WAYLAND_DISPLAY alone is no display the agent can use.
std::optional<std::string> missingXDisplayMessage();

}  // namespace kro::cli
