#pragma once
// Simulated typing through the XTEST extension.
#include "platform/KeySimulator.h"

namespace kro {

class X11KeySimulator final : public KeySimulator {
public:
    X11KeySimulator();
    bool available() const override { return available_; }
    bool postKey(int virtualCode, bool down, int flags) override;

private:
    bool available_ = false;
    int heldFlags_ = 0;
};

}  // namespace kro
