#include "platform/linux/QtPortalBus.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace {

constexpr const char* kService = "org.freedesktop.portal.Desktop";

// One entry of BindShortcuts' a(sa{sv}).
struct ShortcutEntry {
    QString id;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const ShortcutEntry& entry) {
    argument.beginStructure();
    argument << entry.id << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ShortcutEntry& entry) {
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

}  // namespace

Q_DECLARE_METATYPE(ShortcutEntry)

namespace kro {
namespace {

BusValue fromArgument(const QDBusArgument& argument) {
    switch (argument.currentType()) {
        case QDBusArgument::BasicType:
        case QDBusArgument::VariantType: return busValue(argument.asVariant());
        case QDBusArgument::ArrayType: {
            std::vector<BusValue> items;
            argument.beginArray();
            while (!argument.atEnd()) items.push_back(fromArgument(argument));
            argument.endArray();
            return BusValue::ofList(std::move(items));
        }
        case QDBusArgument::StructureType: {
            std::vector<BusValue> items;
            argument.beginStructure();
            while (!argument.atEnd()) items.push_back(fromArgument(argument));
            argument.endStructure();
            return BusValue::ofList(std::move(items));
        }
        case QDBusArgument::MapType: {
            std::map<std::string, BusValue> entries;
            argument.beginMap();
            while (!argument.atEnd()) {
                argument.beginMapEntry();
                const auto key = busValue(argument.asVariant());
                entries[key.kind == BusValue::Kind::text ? key.text : std::to_string(key.integer)] = fromArgument(argument);
                argument.endMapEntry();
            }
            argument.endMap();
            return BusValue::ofDict(std::move(entries));
        }
        case QDBusArgument::MapEntryType:
        case QDBusArgument::UnknownType: break;
    }
    return {};
}

std::vector<BusValue> valuesOf(const QDBusMessage& message) {
    std::vector<BusValue> values;
    for (const auto& argument : message.arguments()) values.push_back(busValue(argument));
    return values;
}

QVariantMap requestOptions(const std::string& handleToken) {
    return {{"handle_token", QString::fromStdString(handleToken)}};
}

QDBusMessage portalCall(const char* interface, const char* method) {
    return QDBusMessage::createMethodCall(kService, kPortalObject, interface, method);
}

}  // namespace

BusValue busValue(const QVariant& value) {
    if (value.canConvert<QDBusVariant>() && value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        return busValue(value.value<QDBusVariant>().variant());
    }
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()) return fromArgument(value.value<QDBusArgument>());
    if (value.metaType() == QMetaType::fromType<QDBusObjectPath>()) {
        return BusValue::ofText(value.value<QDBusObjectPath>().path().toStdString());
    }
    switch (value.metaType().id()) {
        case QMetaType::Bool: {
            BusValue result;
            result.kind = BusValue::Kind::boolean;
            result.boolean = value.toBool();
            return result;
        }
        case QMetaType::UChar:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong: return BusValue::ofInteger(value.toLongLong());
        case QMetaType::ULongLong: return BusValue::ofInteger(static_cast<int64_t>(value.toULongLong()));
        case QMetaType::Double: return BusValue::ofNumber(value.toDouble());
        case QMetaType::QString: return BusValue::ofText(value.toString().toStdString());
        case QMetaType::QVariantMap: {
            std::map<std::string, BusValue> entries;
            const auto map = value.toMap();
            for (auto it = map.begin(); it != map.end(); ++it) entries[it.key().toStdString()] = busValue(it.value());
            return BusValue::ofDict(std::move(entries));
        }
        case QMetaType::QVariantList: {
            std::vector<BusValue> items;
            for (const auto& item : value.toList()) items.push_back(busValue(item));
            return BusValue::ofList(std::move(items));
        }
        default: break;
    }
    return {};
}

// Receives one subscribed signal; QtDBus delivers signals only to slots.
class QtPortalBus::Receiver : public QObject {
    Q_OBJECT
public:
    explicit Receiver(Handler handler) : handler_(std::move(handler)) {}
public slots:
    void receive(const QDBusMessage& message) {
        // The handler may drop this receiver: run a copy.
        auto handler = handler_;
        handler(valuesOf(message));
    }

private:
    Handler handler_;
};

QtPortalBus::QtPortalBus() : bus_(QDBusConnection::sessionBus()) {
    qDBusRegisterMetaType<ShortcutEntry>();
    qDBusRegisterMetaType<QList<ShortcutEntry>>();
}

QtPortalBus::~QtPortalBus() {
    while (!receivers_.empty()) unsubscribe(receivers_.begin()->first);
}

bool QtPortalBus::connected() const { return bus_.isConnected(); }

std::string QtPortalBus::uniqueName() const { return bus_.baseService().toStdString(); }

void QtPortalBus::send(const QDBusMessage& message, Reply reply) {
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, reply = std::move(reply)] {
        watcher->deleteLater();
        const QDBusMessage answer = watcher->reply();
        if (answer.type() == QDBusMessage::ErrorMessage) {
            reply({answer.errorName().toStdString(), answer.errorMessage().toStdString()}, {});
        } else {
            reply({}, valuesOf(answer));
        }
    });
}

void QtPortalBus::screenshot(const std::string& handleToken, Reply reply) {
    auto message = portalCall(kPortalScreenshot, "Screenshot");
    auto options = requestOptions(handleToken);
    options["interactive"] = false;
    options["modal"] = false;
    message << QString() << options;
    send(message, std::move(reply));
}

void QtPortalBus::pickColor(const std::string& handleToken, Reply reply) {
    auto message = portalCall(kPortalScreenshot, "PickColor");
    message << QString() << requestOptions(handleToken);
    send(message, std::move(reply));
}

void QtPortalBus::createShortcutSession(const std::string& handleToken, const std::string& sessionToken, Reply reply) {
    auto message = portalCall(kPortalGlobalShortcuts, "CreateSession");
    auto options = requestOptions(handleToken);
    options["session_handle_token"] = QString::fromStdString(sessionToken);
    message << options;
    send(message, std::move(reply));
}

void QtPortalBus::bindShortcuts(const std::string& sessionPath, const std::vector<PortalShortcut>& shortcuts,
                                const std::string& handleToken, Reply reply) {
    auto message = portalCall(kPortalGlobalShortcuts, "BindShortcuts");
    QList<ShortcutEntry> entries;
    for (const auto& shortcut : shortcuts) {
        QVariantMap properties{{"description", QString::fromStdString(shortcut.description)}};
        if (!shortcut.preferredTrigger.empty()) properties["preferred_trigger"] = QString::fromStdString(shortcut.preferredTrigger);
        entries.push_back({QString::fromStdString(shortcut.id), properties});
    }
    message << QVariant::fromValue(QDBusObjectPath(QString::fromStdString(sessionPath))) << QVariant::fromValue(entries)
            << QString() << requestOptions(handleToken);
    send(message, std::move(reply));
}

void QtPortalBus::interfaceVersion(const std::string& interface, Reply reply) {
    auto message = QDBusMessage::createMethodCall(kService, kPortalObject, "org.freedesktop.DBus.Properties", "Get");
    message << QString::fromStdString(interface) << QString("version");
    send(message, std::move(reply));
}

std::optional<unsigned> QtPortalBus::versionNow(const std::string& interface, int timeoutMs) {
    auto message = QDBusMessage::createMethodCall(kService, kPortalObject, "org.freedesktop.DBus.Properties", "Get");
    message << QString::fromStdString(interface) << QString("version");
    const auto answer = bus_.call(message, QDBus::Block, timeoutMs);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return std::nullopt;
    const auto value = busValue(answer.arguments().first());
    if (value.kind != BusValue::Kind::integer || value.integer < 1) return std::nullopt;
    return static_cast<unsigned>(value.integer);
}

void QtPortalBus::closeRequest(const std::string& requestPath) {
    if (requestPath.empty()) return;
    bus_.asyncCall(QDBusMessage::createMethodCall(kService, QString::fromStdString(requestPath), kPortalRequest, "Close"));
}

int QtPortalBus::subscribe(const std::string& path, const std::string& interface, const std::string& member, Handler handler) {
    const int id = nextId_++;
    auto receiver = std::make_unique<Receiver>(std::move(handler));
    bus_.connect(kService, QString::fromStdString(path), QString::fromStdString(interface), QString::fromStdString(member),
                 receiver.get(), SLOT(receive(QDBusMessage)));
    receiver->setObjectName(QString::fromStdString(path + "|" + interface + "|" + member));
    receivers_[id] = std::move(receiver);
    return id;
}

void QtPortalBus::unsubscribe(int id) {
    const auto found = receivers_.find(id);
    if (found == receivers_.end()) return;
    const auto parts = found->second->objectName().split('|');
    bus_.disconnect(kService, parts.value(0), parts.value(1), parts.value(2), found->second.get(), SLOT(receive(QDBusMessage)));
    // A signal being delivered may still be on the stack of this receiver.
    found->second.release()->deleteLater();
    receivers_.erase(found);
}

}  // namespace kro

#include "QtPortalBus.moc"
