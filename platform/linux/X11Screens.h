#pragma once
// The screens in X's own coordinates. The picker works in device pixels (the root window's coordinates),
// while Qt places windows in interface pixels, which under HiDPI scaling (QT_SCALE_FACTOR, Xft.dpi, a
// per-screen factor) differ by each screen's scale. Qt keeps a screen's top-left corner where it is and
// divides the distance from it by the scale; these helpers map the same way, through the screen that holds
// the point.
#include <QPointF>
#include <QRect>

#include <vector>

class QScreen;
class QWidget;

namespace kro::x11 {

struct NativeScreen {
    QScreen* screen = nullptr;
    QRect geometry;  // device pixels
    double scale = 1;
};

std::vector<NativeScreen> nativeScreens();

QPointF toNative(QPointF interfacePoint);
QPointF fromNative(QPointF devicePoint);

// The pointer in device pixels, exactly (Qt's own cursor position is rounded to interface pixels).
QPoint nativePointer();

// Puts a top-level window exactly on the device-pixel rectangle `frame`, which Qt alone could place only to
// the nearest interface pixel.
void placeWindow(QWidget& window, const QRect& frame);

}  // namespace kro::x11
