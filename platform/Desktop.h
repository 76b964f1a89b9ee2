#pragma once
// What the agent needs of the desktop, as operations. The Qt/X11 side implements them in platform/linux/;
// tests give fakes.
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/ActiveApplication.h"
#include "platform/BridgeChannels.h"
#include "platform/ColorValue.h"
#include "platform/HotKeyCenter.h"
#include "platform/KeySimulator.h"
#include "platform/LoupeWindow.h"
#include "platform/PointerControl.h"
#include "platform/PopUpMenu.h"
#include "platform/ScreenCapture.h"
#include "platform/Sound.h"
#include "platform/WindowControllers.h"
#include "platform/Workspace.h"

namespace kro {

// One entry of the tray icon's menu. An empty title is a separator.
struct StatusMenuItem {
    StatusMenuItem() = default;
    StatusMenuItem(std::string title, std::function<void()> action, std::optional<ColorValue> swatch = std::nullopt,
                   bool enabled = true)
        : title(std::move(title)), action(std::move(action)), swatch(std::move(swatch)), enabled(enabled) {}

    std::string title;
    std::function<void()> action;
    std::optional<ColorValue> swatch;
    bool enabled = true;
};

// The tray icon.
class StatusItem {
public:
    virtual ~StatusItem() = default;
    // Draws the icon, with the colour as its swatch when given.
    virtual void redraw(const std::optional<ColorValue>& color) = 0;
    // Replaces the menu shown by the icon.
    virtual void setMenu(std::vector<StatusMenuItem> items) = 0;
    // Whether a tray shows the icon now. Where none does, the icon docks by itself once one appears.
    virtual bool isInTray() const { return true; }
    // A desktop notification: how a person is told what the missing icon would have shown them.
    virtual void notify(const std::string& title, const std::string& body) {
        (void)title;
        (void)body;
    }
    // The icon was activated (clicked) — set by the agent.
    std::function<void()> onActivated;
};

// A short message shown under the tray icon for `seconds`.
class TooltipWindow {
public:
    virtual ~TooltipWindow() = default;
    virtual void show(const std::string& message, double seconds) = 0;
};

// The general pasteboard: the CLIPBOARD selection.
class Clipboard {
public:
    virtual ~Clipboard() = default;
    virtual std::optional<std::string> text() const = 0;
    virtual void setText(const std::string& text) = 0;
};

enum class NetworkStatus { satisfied, unsatisfied, requiresConnection };

// Network reachability. `start` installs the handler; it may be called on another thread.
class NetworkMonitor {
public:
    virtual ~NetworkMonitor() = default;
    virtual void start(std::function<void(NetworkStatus)> handler) = 0;
    virtual void cancel() = 0;
};

// Applies the application's appearance: dark, light, or the system's when nothing is forced.
class Appearance {
public:
    virtual ~Appearance() = default;
    virtual void apply(std::optional<bool> dark) = 0;
};

// Ends the agent's event loop.
class Application {
public:
    virtual ~Application() = default;
    virtual void quit() = 0;
};

// Everything desktop-side the agent is given at construction.
struct Desktop {
    StatusItem* statusItem = nullptr;
    TooltipWindow* tooltipStatusWindow = nullptr;
    Clipboard* clipboard = nullptr;
    NetworkMonitor* networkMonitor = nullptr;
    Appearance* appearance = nullptr;
    Application* application = nullptr;
    // The picker's desktop: global keys, the pointer, screen capture, the loupe's window, menus at the
    // pointer, simulated keys, sounds, and the windows under the pointer.
    HotKeyCenter* hotKeyCenter = nullptr;
    PointerControl* pointer = nullptr;
    ScreenCapture* screenCapture = nullptr;
    LoupeWindow* loupeWindow = nullptr;
    PopUpMenu* popUpMenu = nullptr;
    KeySimulator* keySimulator = nullptr;
    SoundPlayer* sound = nullptr;
    Workspace* workspace = nullptr;
    // The windows; without it the agent is the tray icon and the picker alone.
    WindowFactory* windows = nullptr;
    // The design-application bridges: the application in front and the channels to the applications.
    ActiveApplicationMonitor* activeApplication = nullptr;
    SessionBus* sessionBus = nullptr;
    DropFolder* dropFolder = nullptr;
    LocalSocketClient* localSockets = nullptr;
};

}  // namespace kro
