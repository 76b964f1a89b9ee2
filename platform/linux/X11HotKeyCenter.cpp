#include "platform/linux/X11HotKeyCenter.h"

#include <QCoreApplication>

#include <xcb/xcb.h>

#include <cstdlib>

#include "platform/KeyCodeTable.h"
#include "platform/linux/X11Connection.h"

namespace kro {
namespace {

constexpr uint16_t kNumLock = XCB_MOD_MASK_2;
constexpr uint16_t kLockVariants[] = {0, XCB_MOD_MASK_LOCK, kNumLock, XCB_MOD_MASK_LOCK | kNumLock};
constexpr uint16_t kRoleModifiers = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

// Stored masks by role: the primary modifier is Ctrl, Control is Super, Option is Alt.
uint16_t xModifiers(int flags) {
    uint16_t modifiers = 0;
    if (flags & 0x20000) modifiers |= XCB_MOD_MASK_SHIFT;
    if (flags & 0x40000) modifiers |= XCB_MOD_MASK_4;
    if (flags & 0x80000) modifiers |= XCB_MOD_MASK_1;
    if (flags & 0x100000) modifiers |= XCB_MOD_MASK_CONTROL;
    return modifiers;
}

}  // namespace

X11HotKeyCenter::X11HotKeyCenter() { QCoreApplication::instance()->installNativeEventFilter(this); }

X11HotKeyCenter::~X11HotKeyCenter() {
    unregisterAll();
    if (auto* app = QCoreApplication::instance()) app->removeNativeEventFilter(this);
}

bool X11HotKeyCenter::registerHotKey(int flags, int code, int identifier, const std::string&) {
    if (const auto found = grabs_.find(identifier); found != grabs_.end()) {
        ungrab(found->second);
        grabs_.erase(found);
    }
    const auto keycode = xKeyCode(code);
    if (!keycode) return false;
    const Grab grab{static_cast<uint8_t>(*keycode), xModifiers(flags)};
    auto* connection = x11::connection();
    bool taken = false;
    for (auto lock : kLockVariants) {
        auto cookie = xcb_grab_key_checked(connection, 0, x11::root(), grab.modifiers | lock, grab.keycode,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        if (auto* error = xcb_request_check(connection, cookie)) {
            taken = true;
            free(error);
        }
    }
    if (taken) {
        // Another program holds the combination: ours would only half work, so none of it stays.
        ungrab(grab);
        return false;
    }
    grabs_[identifier] = grab;
    return true;
}

void X11HotKeyCenter::ungrab(const Grab& grab) {
    for (auto lock : kLockVariants) xcb_ungrab_key(x11::connection(), grab.keycode, x11::root(), grab.modifiers | lock);
    xcb_flush(x11::connection());
}

void X11HotKeyCenter::unregisterAll() {
    if (!x11::connection()) return;
    for (const auto& [identifier, grab] : grabs_) ungrab(grab);
    grabs_.clear();
}

bool X11HotKeyCenter::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") return false;
    auto* event = static_cast<xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_KEY_PRESS) return false;
    auto* press = reinterpret_cast<xcb_key_press_event_t*>(event);
    const uint16_t modifiers = press->state & kRoleModifiers;
    for (const auto& [identifier, grab] : grabs_) {
        if (grab.keycode == press->detail && grab.modifiers == modifiers) {
            const int pressed = identifier;
            // The handler may swap the grabs; it runs after this event is done with.
            QMetaObject::invokeMethod(QCoreApplication::instance(), [this, pressed] {
                if (delegate) delegate(pressed);
            }, Qt::QueuedConnection);
            return true;
        }
    }
    return false;
}

}  // namespace kro
