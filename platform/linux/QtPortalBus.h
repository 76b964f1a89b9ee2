#pragma once
// The desktop portal on the session bus, through QtDBus. Calls are asynchronous; replies and signals arrive in
// Qt's event loop.
#include <QObject>
#include <QDBusConnection>
#include <QDBusMessage>

#include <map>
#include <memory>
#include <optional>

#include "platform/Portal.h"

namespace kro {

class QtPortalBus final : public QObject, public PortalBus {
public:
    QtPortalBus();
    ~QtPortalBus() override;
    // A session bus answers at all.
    bool connected() const;
    // The version of one of the portal's interfaces, waiting at most `timeoutMs` for the portal to start;
    // nothing when it has no such interface or does not answer.
    std::optional<unsigned> versionNow(const std::string& interface, int timeoutMs);

    std::string uniqueName() const override;
    void screenshot(const std::string& handleToken, Reply reply) override;
    void pickColor(const std::string& handleToken, Reply reply) override;
    void createShortcutSession(const std::string& handleToken, const std::string& sessionToken, Reply reply) override;
    void bindShortcuts(const std::string& sessionPath, const std::vector<PortalShortcut>& shortcuts,
                       const std::string& handleToken, Reply reply) override;
    void interfaceVersion(const std::string& interface, Reply reply) override;
    void closeRequest(const std::string& requestPath) override;
    int subscribe(const std::string& path, const std::string& interface, const std::string& member, Handler handler) override;
    void unsubscribe(int id) override;

private:
    void send(const QDBusMessage& message, Reply reply);
    class Receiver;

    QDBusConnection bus_;
    std::map<int, std::unique_ptr<Receiver>> receivers_;
    int nextId_ = 1;
};

// A value of the bus as the portal code reads it; exposed for the tests of the conversion.
BusValue busValue(const QVariant& value);

}  // namespace kro
