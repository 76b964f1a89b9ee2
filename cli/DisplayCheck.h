#pragma once
// The agent needs a desktop session to show its loupe and windows in: an X display or a Wayland compositor.
// Before it starts anything, it, `kro open` and `kro pick` tell a person at once when there is neither.
#include <optional>
#include <string>

namespace kro::cli {

// Nothing when DISPLAY or WAYLAND_DISPLAY names a display; otherwise the lines to print, saying what to do.
std::optional<std::string> missingDisplayMessage();

}  // namespace kro::cli
