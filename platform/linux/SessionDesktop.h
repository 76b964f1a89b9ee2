#pragma once
// The picker's desktop for the session the agent runs in, chosen once at start: X11 grabs, pointer and live
// capture in an X11 session; in a Wayland session the compositor's screen copy or the desktop portal for the
// still, the portal's GlobalShortcuts for the keys, and no simulated keys nor windows under the pointer (no
// Wayland program may type into or look at another's windows).
#include <functional>
#include <memory>
#include <string>

#include "platform/DesktopSession.h"
#include "platform/HotKeyCenter.h"
#include "platform/KeySimulator.h"
#include "platform/PointerControl.h"
#include "platform/PortalHotKeyCenter.h"
#include "platform/ScreenCapture.h"
#include "platform/Workspace.h"

namespace kro {

class LoupeBackdrop;
class QtPortalBus;
class WaylandScreenCopy;
class WaylandStill;

class SessionDesktop {
public:
    using Log = std::function<void(const std::string& line, bool error)>;
    // Made after the Qt application. `globalAction` names the desktop-wide shortcuts for the portal.
    SessionDesktop(SessionKind kind, const SessionVariables& variables, PortalHotKeyCenter::GlobalAction globalAction, Log log);
    ~SessionDesktop();

    const SessionRoutes& routes() const { return routes_; }
    HotKeyCenter* hotKeyCenter() const { return hotKeyCenter_.get(); }
    PointerControl* pointer() const { return pointer_; }
    ScreenCapture* screenCapture() const { return screenCapture_; }
    KeySimulator* keySimulator() const { return keySimulator_.get(); }
    Workspace* workspace() const { return workspace_.get(); }
    // The still the loupe shows in a Wayland session; null in an X11 one, where the lens is live.
    LoupeBackdrop* backdrop() const;

private:
    void startWayland(const SessionVariables& variables, PortalHotKeyCenter::GlobalAction globalAction, const Log& log);
    void startX11();

    SessionRoutes routes_;
    std::unique_ptr<HotKeyCenter> hotKeyCenter_;
    std::unique_ptr<KeySimulator> keySimulator_;
    std::unique_ptr<Workspace> workspace_;
    std::unique_ptr<PointerControl> x11Pointer_;
    std::unique_ptr<ScreenCapture> x11Capture_;
    std::unique_ptr<WaylandScreenCopy> screenCopy_;
    std::unique_ptr<QtPortalBus> portal_;
    std::unique_ptr<WaylandStill> still_;
    PointerControl* pointer_ = nullptr;
    ScreenCapture* screenCapture_ = nullptr;
};

// Where the desktop entry the portals know us by is installed; empty when it is not.
std::string installedDesktopEntry();

}  // namespace kro
