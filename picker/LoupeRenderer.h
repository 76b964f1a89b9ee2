#pragma once
// One frame of the lens, drawn in software into the loupe's square view of 800 interface pixels, at the
// view's device scale: the magnified capture inside an oval of the picker's size, the pixel grid with one
// cell centred on the view, the rim, and the centre cell's frame (or the reset mark, or the precision
// ticks). One cell is `zoom` interface pixels and shows one captured pixel; the centre cell shows the
// capture's pixel (200, 200), the pixel under the pointer, and holds the view's middle device pixel.
#include "platform/ScreenCapture.h"

namespace kro {

struct LoupeFrame {
    const Bitmap* image = nullptr;  // 400 by 400, may be absent
    int size = 180;
    int zoom = 8;
    bool resetMode = false;
    bool precisionMode = false;
    bool dark = false;
    // Device pixels per interface pixel.
    double scale = 1;
};

inline constexpr int kLoupeViewSide = 800;

// The canvas's side in device pixels at `scale`: even, so that its middle pixel is the pointer's.
int loupeCanvasSide(double scale);

// Draws into `canvas` (resized to the side above when it is not); only the lens's square is touched, and
// everything outside the oval in it is cleared.
void renderLoupe(const LoupeFrame& frame, Bitmap& canvas);

}  // namespace kro
