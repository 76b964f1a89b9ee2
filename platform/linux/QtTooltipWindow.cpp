#include "platform/linux/QtTooltipWindow.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace kro {
namespace {

constexpr int kGap = 4;
constexpr int kMargin = 16;

}  // namespace

QPoint tooltipPosition(const QRect& icon, const QSize& size, const QRect& area) {
    QPoint topLeft;
    if (icon.isValid() && !icon.isEmpty()) {
        // Centred under the icon, or over it when the icon sits at the bottom of the screen.
        topLeft = QPoint(icon.center().x() - size.width() / 2, icon.bottom() + kGap);
        if (topLeft.y() + size.height() > area.bottom()) topLeft.setY(icon.top() - kGap - size.height());
    } else {
        topLeft = QPoint(area.right() - size.width() - kMargin, area.top() + kMargin);
    }
    // Whole on the screen, however near its edge the icon is.
    topLeft.setX(std::clamp(topLeft.x(), area.left() + kGap, std::max(area.left() + kGap, area.right() + 1 - kGap - size.width())));
    topLeft.setY(std::clamp(topLeft.y(), area.top() + kGap, std::max(area.top() + kGap, area.bottom() + 1 - kGap - size.height())));
    return topLeft;
}

QtTooltipWindow::QtTooltipWindow(std::function<QRect()> anchor, Elsewhere elsewhere)
    : anchor_(std::move(anchor)), elsewhere_(std::move(elsewhere)) {
    label_.setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    label_.setAttribute(Qt::WA_ShowWithoutActivating);
    label_.setWindowTitle("Kro Message");
    label_.setAccessibleName("Kro message");
    label_.setMargin(8);
    label_.setStyleSheet("QLabel { background: palette(tool-tip-base); color: palette(tool-tip-text); "
                         "border: 1px solid palette(mid); border-radius: 6px; }");
    hideTimer_.setSingleShot(true);
    QObject::connect(&hideTimer_, &QTimer::timeout, &label_, &QLabel::hide);
}

void QtTooltipWindow::show(const std::string& message, double seconds) {
    lastMessage_ = message;
    if (elsewhere_ && QGuiApplication::platformName().startsWith("wayland")) return elsewhere_(message, seconds);
    label_.setText(QString::fromStdString(message));
    label_.adjustSize();
    const QRect icon = anchor_ ? anchor_() : QRect();
    QScreen* screen = icon.isValid() ? QGuiApplication::screenAt(icon.center()) : nullptr;
    if (!screen) screen = QGuiApplication::primaryScreen();
    if (!screen) return;
    label_.move(tooltipPosition(icon, label_.size(), screen->availableGeometry()));
    label_.show();
    label_.raise();
    hideTimer_.start(static_cast<int>(seconds * 1000));
}

}  // namespace kro
