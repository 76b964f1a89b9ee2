#include "platform/linux/QtSessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

namespace kro {
namespace {

QVariant argument(const DBusArgument& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return QString::fromStdString(*text);
    if (const auto* variants = std::get_if<DBusStringVariants>(&value)) {
        // A QVariantList travels as "av".
        QVariantList list;
        for (const auto& item : variants->values) list << QVariant(QString::fromStdString(item));
        return list;
    }
    return QVariantMap();  // "a{sv}"
}

}  // namespace

void QtSessionBus::call(const DBusCall& call, Milliseconds timeout, Done done) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        // Answers come on the event loop, as they do when the bus is there.
        QTimer::singleShot(0, [done] { done("no session bus"); });
        return;
    }
    auto message = QDBusMessage::createMethodCall(QString::fromStdString(call.service), QString::fromStdString(call.path),
                                                  QString::fromStdString(call.interface), QString::fromStdString(call.method));
    QVariantList arguments;
    for (const auto& value : call.arguments) arguments << argument(value);
    message.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, static_cast<int>(timeout.count())));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, [done](QDBusPendingCallWatcher* finished) {
        const QDBusPendingReply<> reply = *finished;
        finished->deleteLater();
        if (reply.isError()) {
            done((reply.error().name() + ": " + reply.error().message()).toStdString());
        } else {
            done(std::nullopt);
        }
    });
}

}  // namespace kro
