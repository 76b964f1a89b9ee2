#include "platform/linux/X11Screens.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <cmath>
#include <cstdlib>

#include "platform/linux/X11Connection.h"

namespace kro::x11 {
namespace {

// The screen that holds the point in the given coordinates, else the first (a point between screens still
// maps the way Qt maps it there, through the primary one).
const NativeScreen* holding(const std::vector<NativeScreen>& screens, QPointF point, bool native) {
    for (const auto& screen : screens) {
        const QRectF area = native ? QRectF(screen.geometry) : QRectF(screen.screen->geometry());
        if (area.contains(point)) return &screen;
    }
    return screens.empty() ? nullptr : &screens.front();
}

}  // namespace

std::vector<NativeScreen> nativeScreens() {
    std::vector<NativeScreen> list;
    for (auto* screen : QGuiApplication::screens()) {
        const auto geometry = screen->geometry();
        const double scale = screen->devicePixelRatio();
        list.push_back({screen,
                        QRect(geometry.topLeft(), QSize(static_cast<int>(std::lround(geometry.width() * scale)),
                                                        static_cast<int>(std::lround(geometry.height() * scale)))),
                        scale});
    }
    return list;
}

QPointF toNative(QPointF point) {
    const auto screens = nativeScreens();
    const auto* screen = holding(screens, point, false);
    if (!screen) return point;
    const QPointF origin = screen->geometry.topLeft();
    return origin + (point - origin) * screen->scale;
}

QPointF fromNative(QPointF point) {
    const auto screens = nativeScreens();
    const auto* screen = holding(screens, point, true);
    if (!screen) return point;
    const QPointF origin = screen->geometry.topLeft();
    return origin + (point - origin) / screen->scale;
}

QPoint nativePointer() {
    auto* reply = xcb_query_pointer_reply(connection(), xcb_query_pointer(connection(), root()), nullptr);
    if (!reply) return {};
    const QPoint point(reply->root_x, reply->root_y);
    free(reply);
    return point;
}

void placeWindow(QWidget& window, const QRect& frame) {
    const auto screens = nativeScreens();
    const auto* screen = holding(screens, QRectF(frame).center(), true);
    const double scale = screen ? screen->scale : 1;
    // Qt maps a window through the screen that holds its centre, even where its corner lies off that screen.
    const QPointF origin = screen ? QPointF(screen->geometry.topLeft()) : QPointF();
    const QPointF topLeft = origin + (QPointF(frame.topLeft()) - origin) / scale;
    // Qt's idea of the geometry, to the nearest interface pixel; then the exact device pixels.
    window.setGeometry(QRect(QPoint(static_cast<int>(std::lround(topLeft.x())), static_cast<int>(std::lround(topLeft.y()))),
                             QSize(static_cast<int>(std::lround(frame.width() / scale)),
                                   static_cast<int>(std::lround(frame.height() / scale)))));
    const uint32_t values[] = {static_cast<uint32_t>(frame.x()), static_cast<uint32_t>(frame.y()),
                               static_cast<uint32_t>(frame.width()), static_cast<uint32_t>(frame.height())};
    xcb_configure_window(connection(), static_cast<xcb_window_t>(window.winId()),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         values);
    xcb_flush(connection());
}

}  // namespace kro::x11
