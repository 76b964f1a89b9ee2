#include "platform/linux/QtLocalSocketClient.h"

#include <QLocalSocket>
#include <QTimer>

#include <sys/socket.h>
#include <unistd.h>

#include <memory>

namespace kro {
namespace {

// A reply is one short line; a peer that sends more is cut off.
constexpr qint64 kReplyLimit = 64 * 1024;

// The user the listening program runs as, from the connected socket itself: a socket file's owner says
// nothing about who is listening on it.
std::optional<uid_t> peerUid(const QLocalSocket& socket) {
    struct ucred credentials {};
    socklen_t size = sizeof credentials;
    if (::getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) {
        return std::nullopt;
    }
    return credentials.uid;
}

// One exchange: its socket, its time limit and its single answer.
struct Exchange {
    QLocalSocket socket;
    QTimer timer;
    QByteArray received;
    LocalSocketClient::Done done;

    void finish(LocalSocketClient::Reply reply) {
        if (!done) return;
        auto call = std::move(done);
        done = nullptr;
        timer.stop();
        socket.abort();
        call(reply);
    }
};

}  // namespace

void QtLocalSocketClient::exchange(const std::string& socketPath, const std::string& line, Milliseconds timeout, Done done) {
    auto exchange = std::make_shared<Exchange>();
    exchange->done = std::move(done);
    // Each handler holds the exchange until it has answered; the answer drops the last reference later on.
    const auto release = [exchange] { QTimer::singleShot(0, [exchange]() mutable { exchange.reset(); }); };
    const auto finish = [exchange, release](LocalSocketClient::Reply reply) {
        if (!exchange->done) return;
        exchange->finish(std::move(reply));
        exchange->socket.disconnect();
        QObject::disconnect(&exchange->timer, nullptr, nullptr, nullptr);
        release();
    };
    auto* socket = &exchange->socket;
    QObject::connect(&exchange->timer, &QTimer::timeout, [finish] { finish({std::nullopt, "no answer in time"}); });
    QObject::connect(socket, &QLocalSocket::connected, [socket, finish, line] {
        const auto uid = peerUid(*socket);
        if (!uid || *uid != ::getuid()) return finish({std::nullopt, "the socket belongs to another user"});
        socket->write(QByteArray::fromStdString(line + "\n"));
    });
    QObject::connect(socket, &QLocalSocket::readyRead, [exchange, socket, finish] {
        exchange->received += socket->read(kReplyLimit - exchange->received.size() + 1);
        if (const auto end = exchange->received.indexOf('\n'); end >= 0) {
            return finish({exchange->received.left(end).toStdString(), ""});
        }
        if (exchange->received.size() > kReplyLimit) finish({std::nullopt, "the answer is too long"});
    });
    QObject::connect(socket, &QLocalSocket::errorOccurred, [socket, finish](QLocalSocket::LocalSocketError) {
        finish({std::nullopt, socket->errorString().toStdString()});
    });
    exchange->timer.setSingleShot(true);
    exchange->timer.start(static_cast<int>(timeout.count()));
    socket->connectToServer(QString::fromStdString(socketPath));
}

}  // namespace kro
