#pragma once
// Where the loupe's text box goes in the loupe's view (800 by 800 interface pixels, the pointer at its
// middle): below the lens, or above it where the screen ends first, and shifted sideways so that it stays
// on the screen under the pointer. The window itself hangs off the screen at an edge; its words never do.
#include "platform/ScreenCapture.h"

namespace kro {

struct ViewBox {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const ViewBox&) const = default;
};

inline constexpr int kLoupeOverlayWidth = 240;
inline constexpr int kLoupeOverlayHeight = 64;

// The screen's rectangle in the view's interface pixels, for the pointer at `mouse` (device pixels).
ScreenRect screenInLoupeView(const ScreenInfo& screen, ScreenPoint mouse);

ViewBox loupeOverlayBox(int lensSize, const ScreenRect& screenInView);

}  // namespace kro
