#pragma once
// Desktop-wide shortcuts through passive key grabs on the root window, each also with Caps Lock and Num Lock.
#include <QAbstractNativeEventFilter>

#include <map>
#include <utility>

#include "platform/HotKeyCenter.h"

namespace kro {

class X11HotKeyCenter final : public HotKeyCenter, public QAbstractNativeEventFilter {
public:
    X11HotKeyCenter();
    ~X11HotKeyCenter() override;
    bool registerHotKey(int flags, int code, int identifier, const std::string& label) override;
    void unregisterAll() override;
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    struct Grab {
        uint8_t keycode;
        uint16_t modifiers;
    };
    void ungrab(const Grab& grab);
    std::map<int, Grab> grabs_;  // by identifier
};

}  // namespace kro
