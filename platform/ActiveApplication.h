#pragma once
// The application in front: the owner of the window the desktop calls active, followed as it changes.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kro {

// One top-level window of a running application, with every name the desktop gives the application.
struct RunningApplication {
    uint64_t window = 0;
    int pid = 0;
    // The desktop-file id the toolkit announces ("org.inkscape.Inkscape"), when it announces one.
    std::string desktopId;
    // The two halves of WM_CLASS: instance ("gimp") and class ("Gimp").
    std::string windowInstance;
    std::string windowClass;
    std::string title;

    // The application's identifier: its desktop-file id where known, else its window class.
    const std::string& bundle() const { return desktopId.empty() ? windowClass : desktopId; }
    bool operator==(const RunningApplication&) const = default;
};

class ActiveApplicationMonitor {
public:
    using Changed = std::function<void(const std::optional<RunningApplication>& frontmost)>;
    virtual ~ActiveApplicationMonitor() = default;
    // Calls `changed` once with the application in front now, then each time another one comes to the front,
    // from the desktop's own change events.
    virtual void start(Changed changed) = 0;
    // Every application window the desktop lists, bottom to top.
    virtual std::vector<RunningApplication> running() const = 0;
    // Asks the desktop to bring the window to the front and give it the keyboard.
    virtual void activate(const RunningApplication& application) = 0;
};

}  // namespace kro
