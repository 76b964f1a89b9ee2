#pragma once
// The system pointer: where it is, placing it, and hiding it from a background process.
#include "platform/ScreenCapture.h"

namespace kro {

class PointerControl {
public:
    virtual ~PointerControl() = default;
    // Global points, origin at the top left of the desktop.
    virtual ScreenPoint location() const = 0;
    virtual void moveTo(ScreenPoint point) = 0;
    virtual bool isCursorVisible() const = 0;
    virtual void hideCursor() = 0;
    virtual void unhideCursor() = 0;
};

}  // namespace kro
