#pragma once
// Whether the desktop composites windows, so that a window's transparent pixels show what lies beneath.
// On X11 a compositing manager owns the _NET_WM_CM_S<screen> selection; without one, transparent pixels
// come out black. Wayland compositors always composite.
namespace kro {

bool desktopComposites();

}  // namespace kro
