#pragma once
// The agent's windows as the application controller sees them: each is created once at launch, then
// shown, hidden and closed. The windows themselves (Qt Widgets, in workspaces/) implement this; the
// controller never sees a widget.
#include <memory>
#include <string>

#include "platform/ColorValue.h"

namespace kro {

// Every window the controller owns, in the order launch creates them.
enum class WindowKind { menu, main, preferences, contrast, colorPanel, onboarding };

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
};

// Makes the window controllers. A kind this build has no window for gives nothing.
class WindowFactory {
public:
    virtual ~WindowFactory() = default;
    virtual std::unique_ptr<WindowController> makeWindow(WindowKind kind) = 0;
};

}  // namespace kro
