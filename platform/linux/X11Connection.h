#pragma once
// The X connection Qt opened, shared by the X11 services so that their events arrive in Qt's loop.
#include <xcb/xcb.h>

#include <optional>
#include <string>

namespace kro::x11 {

xcb_connection_t* connection();
xcb_window_t root();
xcb_atom_t atom(const char* name);
// A property of a window as bytes; nothing when it is absent.
std::optional<std::string> property(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, uint32_t maxLength = 1 << 20);

}  // namespace kro::x11
