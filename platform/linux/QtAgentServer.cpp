#include "platform/linux/QtAgentServer.h"

#include <QLocalSocket>
#include <QPointer>

#include <sys/socket.h>

namespace kro {
namespace {

// A client that gave up waiting (on an agent that was stopped, say) has closed its end by the time its request
// is read: the request is dropped rather than carried out behind the back of a command that reported failure.
bool clientHasGone(QLocalSocket* socket) {
    if (socket->state() != QLocalSocket::ConnectedState) return true;
    char byte;
    return ::recv(static_cast<int>(socket->socketDescriptor()), &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
}

}  // namespace

QtAgentServer::QtAgentServer(Handler handler) : handler_(std::move(handler)) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&server_, &QLocalServer::newConnection, [this] { accept(); });
}

bool QtAgentServer::listen(const std::string& socketPath, std::string& error) {
    const auto path = QString::fromStdString(socketPath);
    // Only the holder of the agent lock gets here, so a socket file left behind is stale.
    QLocalServer::removeServer(path);
    if (!server_.listen(path)) {
        error = server_.errorString().toStdString();
        return false;
    }
    return true;
}

void QtAgentServer::accept() {
    while (auto* socket = server_.nextPendingConnection()) {
        QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
            if (!socket->canReadLine()) {
                // A client that never ends its line is cut off rather than buffered for ever.
                if (socket->bytesAvailable() > 1 << 20) socket->abort();
                return;
            }
            const auto request = socket->readLine().trimmed().toStdString();
            if (clientHasGone(socket)) return;
            // The client may have gone by the time a late reply is ready.
            handler_(request, [guarded = QPointer<QLocalSocket>(socket)](const std::string& line) {
                if (!guarded) return;
                const auto reply = line + "\n";
                guarded->write(reply.data(), static_cast<qint64>(reply.size()));
                guarded->flush();
                guarded->disconnectFromServer();
            });
        });
    }
}

}  // namespace kro
