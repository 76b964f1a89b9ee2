#include "platform/linux/X11KeySimulator.h"

#include <xcb/xtest.h>

#include <cstdlib>

#include "platform/KeyCodeTable.h"
#include "platform/linux/X11Connection.h"

namespace kro {
namespace {

// The left-hand modifier keys by role: Ctrl, Super, Alt, Shift.
constexpr std::pair<int, uint8_t> kModifierKeys[] = {{0x100000, 37}, {0x40000, 133}, {0x80000, 64}, {0x20000, 50}};

void fake(uint8_t type, uint8_t keycode) {
    xcb_test_fake_input(x11::connection(), type, keycode, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

}  // namespace

X11KeySimulator::X11KeySimulator() {
    auto* connection = x11::connection();
    auto* reply = xcb_test_get_version_reply(connection, xcb_test_get_version(connection, 2, 2), nullptr);
    available_ = reply != nullptr;
    free(reply);
}

bool X11KeySimulator::postKey(int virtualCode, bool down, int flags) {
    const auto keycode = xKeyCode(virtualCode);
    if (!available_ || !keycode) return false;
    if (down) {
        for (const auto& [flag, modifier] : kModifierKeys) {
            if (flags & flag) fake(XCB_KEY_PRESS, modifier);
        }
        heldFlags_ = flags;
        fake(XCB_KEY_PRESS, static_cast<uint8_t>(*keycode));
    } else {
        fake(XCB_KEY_RELEASE, static_cast<uint8_t>(*keycode));
        // The modifiers held for the key-down go up with the key.
        for (const auto& [flag, modifier] : kModifierKeys) {
            if (heldFlags_ & flag) fake(XCB_KEY_RELEASE, modifier);
        }
        heldFlags_ = 0;
    }
    xcb_flush(x11::connection());
    return true;
}

}  // namespace kro
