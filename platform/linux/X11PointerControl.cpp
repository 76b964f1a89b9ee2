#include "platform/linux/X11PointerControl.h"

#include <xcb/xfixes.h>

#include <cmath>
#include <cstdlib>

#include "platform/linux/X11Connection.h"

namespace kro {

X11PointerControl::X11PointerControl() {
    auto* connection = x11::connection();
    auto* reply = xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 4, 0), nullptr);
    xfixes_ = reply && reply->major_version >= 4;
    free(reply);
    // Without XFixes 4 the cursor stays visible while picking.
}

ScreenPoint X11PointerControl::location() const {
    auto* reply = xcb_query_pointer_reply(x11::connection(), xcb_query_pointer(x11::connection(), x11::root()), nullptr);
    if (!reply) return {};
    const ScreenPoint point{static_cast<double>(reply->root_x), static_cast<double>(reply->root_y)};
    free(reply);
    return point;
}

void X11PointerControl::moveTo(ScreenPoint point) {
    xcb_warp_pointer(x11::connection(), XCB_WINDOW_NONE, x11::root(), 0, 0, 0, 0, static_cast<int16_t>(std::lround(point.x)),
                     static_cast<int16_t>(std::lround(point.y)));
    xcb_flush(x11::connection());
}

void X11PointerControl::hideCursor() {
    ++hidden_;
    if (!xfixes_) return;
    xcb_xfixes_hide_cursor(x11::connection(), x11::root());
    xcb_flush(x11::connection());
}

void X11PointerControl::unhideCursor() {
    if (hidden_ == 0) return;
    --hidden_;
    if (!xfixes_) return;
    xcb_xfixes_show_cursor(x11::connection(), x11::root());
    xcb_flush(x11::connection());
}

}  // namespace kro
