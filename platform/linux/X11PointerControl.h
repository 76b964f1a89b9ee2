#pragma once
// The pointer through the core protocol (query, warp) and XFixes (hiding it from a background process).
#include "platform/PointerControl.h"

namespace kro {

class X11PointerControl final : public PointerControl {
public:
    X11PointerControl();
    ScreenPoint location() const override;
    void moveTo(ScreenPoint point) override;
    bool isCursorVisible() const override { return hidden_ == 0; }
    void hideCursor() override;
    void unhideCursor() override;

private:
    bool xfixes_ = false;
    int hidden_ = 0;
};

}  // namespace kro
