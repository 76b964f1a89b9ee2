#pragma once
// One frame of the lens, drawn in software into the loupe's 800 by 800 view: the magnified capture inside
// an oval of the picker's size, the pixel grid with one cell centred on the view, the rim, and the centre
// cell's frame (or the reset mark, or the precision ticks). One cell is `zoom` view points; the centre cell
// shows the capture's pixel (200, 200), the pixel under the pointer.
#include "platform/ScreenCapture.h"

namespace kro {

struct LoupeFrame {
    const Bitmap* image = nullptr;  // 400 by 400, may be absent
    int size = 180;
    int zoom = 8;
    bool resetMode = false;
    bool precisionMode = false;
    bool dark = false;
};

inline constexpr int kLoupeViewSide = 800;

// Draws into `canvas` (resized to 800 by 800 when it is not); only the lens's square is touched, and
// everything outside the oval in it is cleared.
void renderLoupe(const LoupeFrame& frame, Bitmap& canvas);

}  // namespace kro
