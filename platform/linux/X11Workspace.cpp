#include "platform/linux/X11Workspace.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>

#include "platform/linux/X11Connection.h"

namespace kro {
namespace {

std::vector<xcb_window_t> windowList(const std::string& bytes) {
    std::vector<xcb_window_t> windows(bytes.size() / 4);
    std::memcpy(windows.data(), bytes.data(), windows.size() * 4);
    return windows;
}

// The application's identifier: the class part of WM_CLASS ("instance\0Class\0").
std::string windowClass(xcb_window_t window) {
    const auto bytes = x11::property(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 1024);
    if (!bytes) return "";
    const auto split = bytes->find('\0');
    if (split == std::string::npos) return *bytes;
    auto name = bytes->substr(split + 1);
    if (const auto end = name.find('\0'); end != std::string::npos) name.resize(end);
    return name;
}

std::optional<ScreenRect> frameOf(xcb_window_t window) {
    auto* connection = x11::connection();
    auto* geometry = xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr);
    if (!geometry) return std::nullopt;
    auto* moved = xcb_translate_coordinates_reply(connection, xcb_translate_coordinates(connection, window, x11::root(), 0, 0), nullptr);
    std::optional<ScreenRect> frame;
    if (moved) frame = ScreenRect{double(moved->dst_x), double(moved->dst_y), double(geometry->width), double(geometry->height)};
    free(moved);
    free(geometry);
    return frame;
}

}  // namespace

void X11Workspace::refresh() {
    items_.clear();
    auto* connection = x11::connection();
    if (!connection) return;
    std::vector<xcb_window_t> windows;
    if (auto list = x11::property(x11::root(), x11::atom("_NET_CLIENT_LIST_STACKING"), XCB_ATOM_WINDOW)) {
        windows = windowList(*list);
    } else if (auto* tree = xcb_query_tree_reply(connection, xcb_query_tree(connection, x11::root()), nullptr)) {
        const auto* children = xcb_query_tree_children(tree);
        windows.assign(children, children + xcb_query_tree_children_length(tree));
        free(tree);
    }
    int level = 0;
    for (auto window : windows) {
        ++level;  // bottom to top
        WorkspaceWindow item;
        item.bundle = windowClass(window);
        if (item.bundle.empty()) continue;
        item.level = level;
        if (auto pid = x11::property(window, x11::atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 4); pid && pid->size() == 4) {
            uint32_t value;
            std::memcpy(&value, pid->data(), 4);
            item.pid = static_cast<int>(value);
        }
        item.name = x11::property(window, x11::atom("_NET_WM_NAME"), x11::atom("UTF8_STRING"), 1024).value_or("");
        item.frame = frameOf(window);
        items_.push_back(std::move(item));
    }
}

std::optional<std::string> X11Workspace::frontmostBundle() const {
    const auto active = x11::property(x11::root(), x11::atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 4);
    if (!active || active->size() != 4) return std::nullopt;
    const auto windows = windowList(*active);
    const auto bundle = windowClass(windows.front());
    if (bundle.empty()) return std::nullopt;
    return bundle;
}

}  // namespace kro
