#pragma once
// A small Wayland client of its own (apart from Qt's connection) that asks the compositor for a copy of one
// output through wlr-screencopy-unstable-v1, offered by Sway, Hyprland and the other wlroots compositors.
// Each copy is the next frame the compositor draws, in the output's device pixels.
//
// Before a copy it can cover the output under the pointer with a clear layer (wlr-layer-shell): the pointer
// then lies on our surface, which hides the cursor (a compositor that draws the cursor in software would put
// it in the picture, over the very pixel to be picked) and tells us where the pointer is.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ScreenCapture.h"

namespace kro {

class WaylandScreenCopy {
public:
    // Connects to the compositor of WAYLAND_DISPLAY and looks at what it offers.
    WaylandScreenCopy();
    ~WaylandScreenCopy();
    WaylandScreenCopy(const WaylandScreenCopy&) = delete;
    WaylandScreenCopy& operator=(const WaylandScreenCopy&) = delete;

    // The compositor can copy outputs for us.
    bool available() const;
    // The names of the outputs ("HDMI-A-1", "HEADLESS-1"), as the compositor calls them.
    std::vector<std::string> outputNames() const;
    // The named output as it is now (the first one for an empty name), rows top to bottom; nothing, with the
    // reason in `error`, when the copy fails, takes over `timeoutSeconds`, or the compositor has gone.
    std::optional<Bitmap> copy(const std::string& outputName, std::string& error, double timeoutSeconds = 2);

    // Where the pointer is, in logical pixels of the output it lies on.
    struct PointerPlace {
        std::string outputName;
        double x = 0;
        double y = 0;
    };
    // Covers the output under the pointer until `uncover`; nothing when the compositor has no layer shell or
    // the pointer did not come onto the cover within `timeoutSeconds`.
    std::optional<PointerPlace> cover(double timeoutSeconds = 1);
    void uncover();

    struct State;

private:
    std::unique_ptr<State> state_;
};

}  // namespace kro
