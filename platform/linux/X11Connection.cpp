#include "platform/linux/X11Connection.h"

#include <QGuiApplication>

#include <cstdlib>
#include <map>

namespace kro::x11 {

xcb_connection_t* connection() {
    auto* native = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return native ? native->connection() : nullptr;
}

xcb_window_t root() {
    static xcb_window_t window = [] {
        auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection())).data;
        return screen ? screen->root : xcb_window_t{XCB_WINDOW_NONE};
    }();
    return window;
}

xcb_atom_t atom(const char* name) {
    static std::map<std::string, xcb_atom_t> cache;
    if (const auto found = cache.find(name); found != cache.end()) return found->second;
    auto cookie = xcb_intern_atom(connection(), 0, static_cast<uint16_t>(strlen(name)), name);
    auto* reply = xcb_intern_atom_reply(connection(), cookie, nullptr);
    const xcb_atom_t value = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    free(reply);
    cache[name] = value;
    return value;
}

std::optional<std::string> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type, uint32_t maxLength) {
    auto cookie = xcb_get_property(connection(), 0, window, name, type, 0, maxLength / 4);
    auto* reply = xcb_get_property_reply(connection(), cookie, nullptr);
    if (!reply) return std::nullopt;
    std::optional<std::string> bytes;
    if (reply->type != XCB_ATOM_NONE) {
        const auto length = xcb_get_property_value_length(reply);
        bytes = std::string(static_cast<const char*>(xcb_get_property_value(reply)), static_cast<size_t>(length));
    }
    free(reply);
    return bytes;
}

}  // namespace kro::x11
