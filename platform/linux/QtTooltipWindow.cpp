#include "platform/linux/QtTooltipWindow.h"

#include <QGuiApplication>
#include <QScreen>

namespace kro {

QtTooltipWindow::QtTooltipWindow(std::function<QRect()> anchor) : anchor_(std::move(anchor)) {
    label_.setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    label_.setAttribute(Qt::WA_ShowWithoutActivating);
    label_.setMargin(8);
    label_.setStyleSheet("QLabel { background: palette(tool-tip-base); color: palette(tool-tip-text); "
                         "border: 1px solid palette(mid); border-radius: 6px; }");
    hideTimer_.setSingleShot(true);
    QObject::connect(&hideTimer_, &QTimer::timeout, &label_, &QLabel::hide);
}

void QtTooltipWindow::show(const std::string& message, double seconds) {
    lastMessage_ = message;
    label_.setText(QString::fromStdString(message));
    label_.adjustSize();
    QRect icon = anchor_ ? anchor_() : QRect();
    QPoint topLeft;
    if (icon.isValid() && !icon.isEmpty()) {
        // Centred under the icon, at its lower edge.
        topLeft = QPoint(icon.center().x() - label_.width() / 2, icon.bottom() + 4);
    } else if (auto* screen = QGuiApplication::primaryScreen()) {
        const auto area = screen->availableGeometry();
        topLeft = QPoint(area.right() - label_.width() - 16, area.top() + 16);
    }
    label_.move(topLeft);
    label_.show();
    label_.raise();
    hideTimer_.start(static_cast<int>(seconds * 1000));
}

}  // namespace kro
