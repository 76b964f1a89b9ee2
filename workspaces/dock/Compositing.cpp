#include "workspaces/dock/Compositing.h"

#include <QGuiApplication>
#include <cstdlib>

#include "platform/linux/X11Connection.h"

namespace kro {

bool desktopComposites() {
    const QString platform = QGuiApplication::platformName();
    if (platform.startsWith("wayland")) return true;
    if (platform != "xcb") return false;
    auto* connection = x11::connection();
    if (!connection) return false;
    // The screen of x11::root(): the first of the display.
    auto cookie = xcb_get_selection_owner(connection, x11::atom("_NET_WM_CM_S0"));
    auto* reply = xcb_get_selection_owner_reply(connection, cookie, nullptr);
    const bool owned = reply && reply->owner != XCB_WINDOW_NONE;
    std::free(reply);
    return owned;
}

}  // namespace kro
