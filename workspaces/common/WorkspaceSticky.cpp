#include "workspaces/common/WorkspaceSticky.h"

#include <QGuiApplication>
#include <QWidget>

#include "platform/linux/X11Connection.h"

namespace kro {

void setOnAllWorkspaces(QWidget& window, bool sticky) {
    if (QGuiApplication::platformName() != "xcb") return;
    auto* connection = x11::connection();
    if (!connection) return;
    const auto id = xcb_window_t(window.winId());
    // A mapped window asks the window manager (EWMH _NET_WM_STATE message); the desktop property covers a
    // window that is not mapped yet, which the manager reads when it maps it.
    const uint32_t desktop = sticky ? 0xFFFFFFFFu : 0u;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, x11::atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 32, 1,
                        &desktop);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = id;
    message.type = x11::atom("_NET_WM_STATE");
    message.data.data32[0] = sticky ? 1 : 0;  // add or remove
    message.data.data32[1] = x11::atom("_NET_WM_STATE_STICKY");
    message.data.data32[3] = 1;  // from a normal application
    xcb_send_event(connection, 0, x11::root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

}  // namespace kro
