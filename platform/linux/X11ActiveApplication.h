#pragma once
// The application in front on X11: the window manager's _NET_ACTIVE_WINDOW, followed through the root
// window's property-change events rather than by asking again and again.
#include <QAbstractNativeEventFilter>

#include <xcb/xcb.h>

#include "platform/ActiveApplication.h"

namespace kro {

class X11ActiveApplication final : public ActiveApplicationMonitor, public QAbstractNativeEventFilter {
public:
    ~X11ActiveApplication() override;
    void start(Changed changed) override;
    std::vector<RunningApplication> running() const override;
    void activate(const RunningApplication& application) override;
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void activeWindowChanged();

    Changed changed_;
    std::optional<RunningApplication> last_;
    bool started_ = false;
};

}  // namespace kro
