#pragma once
#include <QLabel>
#include <QTimer>
#include <functional>

#include "platform/Desktop.h"

namespace kro {

// Where a message of `size` goes for a tray icon at `icon` (empty when its place is unknown) on a screen
// whose free area is `area`: under the icon, over it at the bottom of the screen, at the top right when the
// icon's place is unknown, and always whole on the screen.
QPoint tooltipPosition(const QRect& icon, const QSize& size, const QRect& area);

// A small message under the tray icon (or at the top right of the screen when the icon's place is unknown).
// Where no client may place its own window (Qt on Wayland), a message window would land wherever the
// compositor puts a new window, tiled among the person's windows on Sway: there `elsewhere` shows the message
// instead (a brief desktop notification).
class QtTooltipWindow final : public TooltipWindow {
public:
    using Elsewhere = std::function<void(const std::string& message, double seconds)>;
    explicit QtTooltipWindow(std::function<QRect()> anchor, Elsewhere elsewhere = {});
    void show(const std::string& message, double seconds) override;
    // The last message shown, for the log and the end-to-end tests.
    const std::string& lastMessage() const { return lastMessage_; }

private:
    QLabel label_;
    QTimer hideTimer_;
    std::function<QRect()> anchor_;
    Elsewhere elsewhere_;
    std::string lastMessage_;
};

}  // namespace kro
