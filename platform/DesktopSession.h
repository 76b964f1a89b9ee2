#pragma once
// Which desktop session the agent runs in, and which route each need of the picker takes there. Decided once
// at start; nothing above platform/ knows the answer.
#include <optional>
#include <string>

namespace kro {

enum class SessionKind { none, x11, wayland };

// The variables that tell a session apart, as the environment holds them (empty when unset).
struct SessionVariables {
    std::string waylandDisplay;
    std::string x11Display;
    std::string sessionType;  // XDG_SESSION_TYPE
    std::string forcedCapture;  // KRO_TEST_CAPTURE_ROUTE, set only by tests
};

SessionVariables sessionVariablesFromEnvironment();

// A Wayland compositor wins over the X server it may offer (XWayland sees only X11 windows), unless the login
// manager says the session is an X11 one.
SessionKind detectSession(const SessionVariables& variables);

enum class CaptureRoute {
    none,
    x11Composite,      // live, the windows' own pixmaps
    screenCopy,        // a still of the output, copied by the compositor (wlr-screencopy-unstable-v1)
    portalScreenshot,  // a still through the desktop portal's Screenshot
    portalPickColor,   // one colour chosen in the portal's own picker, no loupe
};

enum class HotKeyRoute {
    none,                   // the tray and `kro pick`, bound to a desktop shortcut by hand
    x11Grab,                // passive grabs on the root window
    portalGlobalShortcuts,  // the desktop portal's GlobalShortcuts
};

// What the session offers, as found at start.
struct SessionOffers {
    bool screenCopy = false;
    // Interface versions of the desktop portal; absent when it has none.
    std::optional<unsigned> portalScreenshot;
    std::optional<unsigned> portalGlobalShortcuts;
};

struct SessionRoutes {
    SessionKind kind = SessionKind::none;
    CaptureRoute capture = CaptureRoute::none;
    HotKeyRoute hotKeys = HotKeyRoute::none;
};

// The first route that works, in the order live copy, portal still, portal colour. `forced` names a capture
// route ("screen-copy", "portal", "pick-color") that the end-to-end tests insist on; an unknown name is ignored.
SessionRoutes chooseRoutes(SessionKind kind, const SessionOffers& offers, const std::string& forced = {});

// The route a session falls back to when its still cannot be had, if any: the portal after the screen copy,
// the portal's colour pick after either.
std::optional<CaptureRoute> fallbackAfter(CaptureRoute route, const SessionOffers& offers);

// Where the desktop takes no shortcuts from applications: how to bind the picker to a key by hand, in one line.
std::string shortcutBindingAdvice();
// The name of the application property that holds that line while it applies, for the shortcuts' preferences.
inline constexpr char kShortcutAdviceProperty[] = "kroShortcutAdvice";

std::string describe(SessionKind kind);
std::string describe(CaptureRoute route);
std::string describe(HotKeyRoute route);
// One log line: the session and every route taken.
std::string describe(const SessionRoutes& routes);

}  // namespace kro
