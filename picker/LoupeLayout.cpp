#include "picker/LoupeLayout.h"

#include <algorithm>
#include <cmath>

#include "picker/LoupeRenderer.h"

namespace kro {
namespace {

constexpr int kGap = 6;      // between the lens and the box
constexpr int kMargin = 4;   // between the box and the screen's edge

}  // namespace

ScreenRect screenInLoupeView(const ScreenInfo& screen, ScreenPoint mouse) {
    const double scale = screen.interfaceScale > 0 ? screen.interfaceScale : 1;
    const double middle = kLoupeViewSide / 2.0;
    return {middle + (screen.frame.x - std::trunc(mouse.x)) / scale, middle + (screen.frame.y - std::trunc(mouse.y)) / scale,
            screen.frame.width / scale, screen.frame.height / scale};
}

ViewBox loupeOverlayBox(int lensSize, const ScreenRect& screen) {
    const int lensTop = (kLoupeViewSide - lensSize) / 2;
    const int below = lensTop + lensSize + kGap;
    const int above = lensTop - kGap - kLoupeOverlayHeight;
    const double screenBottom = screen.y + screen.height - kMargin;
    const int y = below + kLoupeOverlayHeight <= screenBottom ? below : above;

    const double left = screen.x + kMargin;
    const double right = screen.x + screen.width - kMargin - kLoupeOverlayWidth;
    const double centred = (kLoupeViewSide - kLoupeOverlayWidth) / 2.0;
    // A screen narrower than the box keeps it at the screen's left edge.
    const double x = std::max(left, std::min(centred, right));
    return {static_cast<int>(std::lround(x)), y, kLoupeOverlayWidth, kLoupeOverlayHeight};
}

}  // namespace kro
