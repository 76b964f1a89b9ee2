#include "platform/linux/SessionDesktop.h"

#include <QCoreApplication>

#include <filesystem>
#include <sstream>

#include "platform/Paths.h"
#include "platform/linux/QtPortalBus.h"
#include "platform/linux/WaylandScreenCopy.h"
#include "platform/linux/WaylandStill.h"
#include "platform/linux/X11HotKeyCenter.h"
#include "platform/linux/X11KeySimulator.h"
#include "platform/linux/X11PointerControl.h"
#include "platform/linux/X11ScreenCapture.h"
#include "platform/linux/X11Workspace.h"

namespace kro {
namespace {

// The portal starts on demand; its first answer may take a moment.
constexpr int kPortalProbeMs = 5000;

std::string variable(const char* name, const char* fallback) {
    const char* value = std::getenv(name);
    return value && *value ? value : fallback;
}

}  // namespace

std::string installedDesktopEntry() {
    const auto home = std::getenv("HOME") ? std::string(std::getenv("HOME")) : std::string();
    std::vector<std::string> folders{variable("XDG_DATA_HOME", (home + "/.local/share").c_str())};
    std::stringstream dirs(variable("XDG_DATA_DIRS", "/usr/local/share:/usr/share"));
    for (std::string folder; std::getline(dirs, folder, ':');) {
        if (!folder.empty()) folders.push_back(folder);
    }
    for (const auto& folder : folders) {
        const auto path = folder + "/applications/" + kBundleIdentifier + ".desktop";
        std::error_code error;
        if (std::filesystem::exists(path, error)) return path;
    }
    return {};
}

SessionDesktop::SessionDesktop(SessionKind kind, const SessionVariables& variables, PortalHotKeyCenter::GlobalAction globalAction,
                               Log log) {
    if (kind == SessionKind::wayland) {
        startWayland(variables, std::move(globalAction), log);
    } else {
        startX11();
    }
    log(describe(routes_), false);
}

SessionDesktop::~SessionDesktop() = default;

LoupeBackdrop* SessionDesktop::backdrop() const { return still_.get(); }

void SessionDesktop::startX11() {
    routes_ = chooseRoutes(SessionKind::x11, {});
    hotKeyCenter_ = std::make_unique<X11HotKeyCenter>();
    keySimulator_ = std::make_unique<X11KeySimulator>();
    workspace_ = std::make_unique<X11Workspace>();
    x11Pointer_ = std::make_unique<X11PointerControl>();
    x11Capture_ = std::make_unique<X11ScreenCapture>();
    pointer_ = x11Pointer_.get();
    screenCapture_ = x11Capture_.get();
}

void SessionDesktop::startWayland(const SessionVariables& variables, PortalHotKeyCenter::GlobalAction globalAction, const Log& log) {
    SessionOffers offers;
    screenCopy_ = std::make_unique<WaylandScreenCopy>();
    offers.screenCopy = screenCopy_->available();
    portal_ = std::make_unique<QtPortalBus>();
    if (portal_->connected()) {
        offers.portalScreenshot = portal_->versionNow(kPortalScreenshot, kPortalProbeMs);
        if (offers.portalScreenshot) offers.portalGlobalShortcuts = portal_->versionNow(kPortalGlobalShortcuts, kPortalProbeMs);
    } else {
        log("No session bus answers: the desktop portal cannot be asked for screenshots or shortcuts", true);
    }
    routes_ = chooseRoutes(SessionKind::wayland, offers, variables.forcedCapture);
    if (routes_.capture == CaptureRoute::none) {
        log("This Wayland desktop offers no way to see the screen: the picker needs a compositor with screen copy "
            "(Sway, Hyprland) or xdg-desktop-portal with the portal of this desktop (xdg-desktop-portal-gnome, "
            "xdg-desktop-portal-kde, or xdg-desktop-portal-wlr with xdg-desktop-portal-gtk)",
            true);
    }
    // The shortcuts' preferences show how to bind the picker by hand where the desktop takes no shortcuts.
    const auto adviseBinding = [] {
        if (qApp) qApp->setProperty(kShortcutAdviceProperty, QString::fromStdString(shortcutBindingAdvice()));
    };
    if (routes_.hotKeys == HotKeyRoute::none) {
        log("This desktop's portal has no GlobalShortcuts: open the picker from the tray, or bind the command "
            "`kro pick` to a shortcut in the desktop's keyboard settings",
            false);
        adviseBinding();
    }
    if (installedDesktopEntry().empty()) {
        log(std::string("The desktop entry ") + kBundleIdentifier +
                ".desktop is not installed: the desktop portals cannot tell which application asks, so their dialogs "
                "and settings may not name Kro; install Kro (its package, or cmake --install build --prefix ~/.local)",
            false);
    }

    auto* bus = routes_.hotKeys == HotKeyRoute::portalGlobalShortcuts ? portal_.get() : nullptr;
    auto keys = std::make_unique<PortalHotKeyCenter>(bus, std::move(globalAction), [log, adviseBinding](const std::string& line) {
        log(line, true);
        adviseBinding();
    });
    WaylandStill::Services services{routes_.capture, offers, screenCopy_.get(), portal_->connected() ? portal_.get() : nullptr,
                                    keys.get(), [log](const std::string& line) { log(line, false); }};
    hotKeyCenter_ = std::move(keys);
    still_ = std::make_unique<WaylandStill>(std::move(services));
    pointer_ = still_.get();
    screenCapture_ = still_.get();
}

}  // namespace kro
