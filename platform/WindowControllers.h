#pragma once
// The agent's windows as the application controller sees them: each is created once at launch, then
// shown, hidden and closed. The windows themselves (Qt Widgets, in workspaces/) implement this; the
// controller never sees a widget.
#include <memory>
#include <string>

#include "platform/ColorValue.h"

namespace kro {

// Every window the controller owns, in the order launch creates them.
enum class WindowKind { menu, main, preferences, contrast, colorPanel, onboarding, dock };

class WindowController {
public:
    virtual ~WindowController() = default;
    // Shows the window and brings it to the front (a second call only raises it).
    virtual void show() = 0;
    virtual void hide() = 0;
    // Closes the window; it can be shown again.
    virtual void close() = 0;
    virtual bool isVisible() const = 0;

    // What particular windows take; the others ignore it.
    // A colour picked for the inspector of the library window.
    virtual void inspect(const ColorValue&) {}
    // A short inline message in the window ("Color Created").
    virtual void showNotice(const std::string&) {}
    // The contrast checker: the pair to check, recorded as one undo step.
    virtual void showColors(const ColorValue& /*foreground*/, const ColorValue& /*background*/) {}
    // A colour the picker brings back to a window: the colour panel's colour, or the contrast checker's
    // foreground (`role` 0) or background (`role` 1).
    virtual void takeColor(const ColorValue&, int /*role*/) {}
    // The preferences: the pane of this number, as the "settings" URL command numbers them.
    virtual void showPane(int /*number*/) {}
    // Shown near this window's frame when it is open (the colour panel beside the library window).
    virtual void showNear(const WindowController* /*other*/) { show(); }
};

// Makes the window controllers. A kind this build has no window for gives nothing.
class WindowFactory {
public:
    virtual ~WindowFactory() = default;
    virtual std::unique_ptr<WindowController> makeWindow(WindowKind kind) = 0;
};

}  // namespace kro
