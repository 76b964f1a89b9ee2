#include "platform/DesktopSession.h"

#include <cstdlib>

namespace kro {
namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// PickColor arrived with the second version of the Screenshot interface.
constexpr unsigned kPickColorVersion = 2;

bool offersPickColor(const SessionOffers& offers) {
    return offers.portalScreenshot && *offers.portalScreenshot >= kPickColorVersion;
}

}  // namespace

SessionVariables sessionVariablesFromEnvironment() {
    return {variable("WAYLAND_DISPLAY"), variable("DISPLAY"), variable("XDG_SESSION_TYPE"), variable("KRO_TEST_CAPTURE_ROUTE")};
}

SessionKind detectSession(const SessionVariables& variables) {
    const bool wayland = !variables.waylandDisplay.empty();
    const bool x11 = !variables.x11Display.empty();
    if (wayland && !(x11 && variables.sessionType == "x11")) return SessionKind::wayland;
    if (x11) return SessionKind::x11;
    return SessionKind::none;
}

SessionRoutes chooseRoutes(SessionKind kind, const SessionOffers& offers, const std::string& forced) {
    SessionRoutes routes{kind, CaptureRoute::none, HotKeyRoute::none};
    if (kind == SessionKind::x11) {
        routes.capture = CaptureRoute::x11Composite;
        routes.hotKeys = HotKeyRoute::x11Grab;
        return routes;
    }
    if (kind != SessionKind::wayland) return routes;

    if (offers.portalGlobalShortcuts) routes.hotKeys = HotKeyRoute::portalGlobalShortcuts;
    if (forced == "screen-copy") {
        routes.capture = CaptureRoute::screenCopy;
    } else if (forced == "portal") {
        routes.capture = CaptureRoute::portalScreenshot;
    } else if (forced == "pick-color") {
        routes.capture = CaptureRoute::portalPickColor;
    } else if (offers.screenCopy) {
        routes.capture = CaptureRoute::screenCopy;
    } else if (offers.portalScreenshot) {
        routes.capture = CaptureRoute::portalScreenshot;
    }
    return routes;
}

std::optional<CaptureRoute> fallbackAfter(CaptureRoute route, const SessionOffers& offers) {
    if (route == CaptureRoute::screenCopy && offers.portalScreenshot) return CaptureRoute::portalScreenshot;
    if ((route == CaptureRoute::screenCopy || route == CaptureRoute::portalScreenshot) && offersPickColor(offers)) {
        return CaptureRoute::portalPickColor;
    }
    return std::nullopt;
}

std::string describe(SessionKind kind) {
    switch (kind) {
        case SessionKind::x11: return "X11";
        case SessionKind::wayland: return "Wayland";
        case SessionKind::none: break;
    }
    return "none";
}

std::string describe(CaptureRoute route) {
    switch (route) {
        case CaptureRoute::x11Composite: return "live, from the X11 windows' pixmaps";
        case CaptureRoute::screenCopy: return "a still of the output copied by the compositor (wlr-screencopy)";
        case CaptureRoute::portalScreenshot: return "a still through the desktop portal's Screenshot";
        case CaptureRoute::portalPickColor: return "one colour through the desktop portal's PickColor, without the loupe";
        case CaptureRoute::none: break;
    }
    return "none";
}

std::string describe(HotKeyRoute route) {
    switch (route) {
        case HotKeyRoute::x11Grab: return "X11 key grabs";
        case HotKeyRoute::portalGlobalShortcuts: return "the desktop portal's GlobalShortcuts";
        case HotKeyRoute::none: break;
    }
    return "none (the tray, or bind `kro pick` to a desktop shortcut)";
}

std::string shortcutBindingAdvice() {
    return "This desktop takes no shortcuts from applications: bind the command \"kro pick\" to a key in its "
           "keyboard settings (Sway: bindsym Ctrl+Alt+p exec kro pick; GNOME: Settings → Keyboard → Custom Shortcuts).";
}

std::string describe(const SessionRoutes& routes) {
    return "session: " + describe(routes.kind) + "; capture: " + describe(routes.capture) + "; hot keys: " +
           describe(routes.hotKeys);
}

}  // namespace kro
