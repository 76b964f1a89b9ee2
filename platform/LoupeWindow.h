#pragma once
// The loupe's window as the picker session drives it, and the pointer events it reports. Modifier flags
// use the stored masks by role (see picker/HotKey.h); deltas are in points, positive to the right and down.
#include <cstdint>
#include <functional>
#include <string>

#include "platform/ScreenCapture.h"

namespace kro {

enum class PointerEventType {
    leftMouseDown, leftMouseUp, rightMouseDown, rightMouseUp, mouseMoved, leftMouseDragged, rightMouseDragged,
    otherMouseDown, otherMouseUp, otherMouseDragged, flagsChanged, scrollWheel, magnify, smartMagnify,
};

// A scroll or gesture phase; `none` for a plain wheel.
enum class GesturePhase { none, mayBegin, began, stationary, changed, ended, cancelled };

struct PointerEvent {
    PointerEventType type = PointerEventType::mouseMoved;
    GesturePhase phase = GesturePhase::none;
    double deltaX = 0;
    double deltaY = 0;
    double magnification = 0;
    int modifierFlags = 0;
};

class LoupeWindow {
public:
    virtual ~LoupeWindow() = default;
    // The native window, the one every capture leaves out.
    virtual uint64_t windowID() const = 0;
    virtual void setFrame(const ScreenRect& frame) = 0;
    virtual void setAlpha(double alpha) = 0;
    virtual void orderFront() = 0;
    virtual void orderOut() = 0;
    // Asks for the views to be drawn again on the next turn of the loop.
    virtual void setNeedsDisplay() = 0;
    // Every pointer event while a session runs.
    std::function<void(const PointerEvent&)> onEvent;
    // The desktop took the session away (its screen cannot be seen, the compositor went): the session ends,
    // and `reason` is the one line that says why.
    std::function<void(const std::string& reason)> onSessionLost;
};

}  // namespace kro
