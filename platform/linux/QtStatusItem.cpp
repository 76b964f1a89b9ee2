#include "platform/linux/QtStatusItem.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QPainter>
#include <QPixmap>

#include "library/Sherlog.h"
#include "platform/Paths.h"

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

void QtStatusItem::notify(const std::string& title, const std::string& body) { send(title, body, -1, false); }

void QtStatusItem::notifyBriefly(const std::string& title, double seconds) {
    send(title, "", static_cast<int>(seconds * 1000), true);
}

void QtStatusItem::send(const std::string& title, const std::string& body, int expireMilliseconds, bool transient) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        SHERLOG("No session bus for a desktop notification: " + title, SherlogLevel::info);
        return;
    }
    auto message = QDBusMessage::createMethodCall("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                                  "org.freedesktop.Notifications", "Notify");
    QVariantMap hints{{"desktop-entry", QString(kBundleIdentifier)}};
    if (transient) hints.insert("transient", true);
    message << QString("Kro") << 0u << QString(kBundleIdentifier) << QString::fromStdString(title)
            << QString::fromStdString(body) << QStringList() << hints << expireMilliseconds;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), &tray_);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [title](QDBusPendingCallWatcher* call) {
        if (call->isError()) {
            SHERLOG("No notification service answered (" + call->error().message().toStdString() + "): " + title,
                    SherlogLevel::info);
        } else {
            SHERLOG("Notification shown: " + title, SherlogLevel::info);
        }
        call->deleteLater();
    });
}

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
