#include "platform/linux/QtStatusItem.h"

#include <QPainter>
#include <QPixmap>

namespace kro {
namespace {

QColor qColor(const ColorValue& color) {
    const auto srgb = color.usingColorSpace(ColorSpace::sRGB());
    return QColor::fromRgbF(static_cast<float>(std::clamp(srgb.red(), 0.0, 1.0)),
                            static_cast<float>(std::clamp(srgb.green(), 0.0, 1.0)),
                            static_cast<float>(std::clamp(srgb.blue(), 0.0, 1.0)));
}

QIcon swatchIcon(const std::optional<ColorValue>& color) {
    QIcon icon;
    for (int size : {16, 22, 24, 32, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        const qreal ring = std::max<qreal>(1.5, size / 12.0);
        const QRectF outer(ring / 2, ring / 2, size - ring, size - ring);
        painter.setPen(QPen(QColor(128, 128, 128), ring));
        painter.setBrush(color ? QBrush(qColor(*color)) : QBrush(Qt::NoBrush));
        painter.drawEllipse(outer.adjusted(ring, ring, -ring, -ring));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace

QtStatusItem::QtStatusItem() {
    tray_.setToolTip("Kro");
    tray_.setIcon(swatchIcon(std::nullopt));
    QObject::connect(&tray_, &QSystemTrayIcon::activated, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger && onActivated) onActivated();
    });
    tray_.show();
}

void QtStatusItem::redraw(const std::optional<ColorValue>& color) { tray_.setIcon(swatchIcon(color)); }

void QtStatusItem::setMenu(std::vector<StatusMenuItem> items) {
    auto menu = std::make_unique<QMenu>();
    for (auto& item : items) {
        if (item.title.empty()) {
            menu->addSeparator();
            continue;
        }
        auto* action = menu->addAction(QString::fromStdString(item.title));
        action->setEnabled(item.enabled);
        if (item.swatch) action->setIcon(swatchIcon(item.swatch));
        if (item.action) QObject::connect(action, &QAction::triggered, [run = item.action] { run(); });
    }
    tray_.setContextMenu(menu.get());
    menu_ = std::move(menu);
}

}  // namespace kro
