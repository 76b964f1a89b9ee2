#pragma once
// Simulated copy and paste in the frontmost application: the primary modifier (Ctrl) with C or V.
// Each call blocks its thread for 200 ms, a pause before each key event so the target keeps up.
#include <functional>

#include "platform/Desktop.h"
#include "platform/KeySimulator.h"

namespace kro {

class CMD {
public:
    static void setKeySimulator(KeySimulator* simulator);
    // Pauses between the key events; tests replace it.
    static void setSleep(std::function<void(int microseconds)> sleep);
    static void performCopy(const Clipboard* clipboard);
    // `accessibilityCheck` runs on the main queue 100 ms later, as the permission prompt's hook.
    static void performPaste(std::function<void()> accessibilityCheck = {});
};

}  // namespace kro
