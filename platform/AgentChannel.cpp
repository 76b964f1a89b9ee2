#include "platform/AgentChannel.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>

namespace kro {

std::string agentSocketPath(const Paths& paths) { return paths.runtimeDir + "/" + kBundleIdentifier + ".socket"; }
bool isURLArgument(const std::string& arg) {
    const auto colon = arg.find(':');
    return colon != std::string::npos && colon > 0 && arg.find('/') > colon;
}

std::string agentLockPath(const Paths& paths) { return paths.runtimeDir + "/" + kBundleIdentifier + ".lock"; }

AgentReply sendToAgent(const std::string& socketPath, const std::string& line, double timeoutSeconds) {
    const AgentReply noAgent{AgentReply::Status::noAgent, {}};
    sockaddr_un address{};
    if (socketPath.size() >= sizeof(address.sun_path)) return noAgent;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size() + 1);

    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return noAgent;
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd);
        return noAgent;
    }
    // Connected: from here on an agent is there, whether or not it answers. A stopped agent's socket still
    // takes connections and requests into its queue.
    AgentReply reply{AgentReply::Status::silent, {}};
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(timeoutSeconds);
    // A long request to an agent that reads nothing must not block for ever either.
    const auto micros = static_cast<long>(timeoutSeconds * 1e6);
    const timeval sendLimit{micros / 1000000, micros % 1000000};
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &sendLimit, sizeof sendLimit);
    const std::string request = line + "\n";
    size_t sent = 0;
    while (sent < request.size()) {
        const ssize_t n = ::send(fd, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            ::close(fd);
            return reply;
        }
        sent += static_cast<size_t>(n);
    }
    std::string received;
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) break;
        pollfd waiting{fd, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, static_cast<int>(left.count()));
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) break;
        char buffer[4096];
        const ssize_t n = ::recv(fd, buffer, sizeof buffer, 0);
        if (n <= 0) break;
        received.append(buffer, static_cast<size_t>(n));
        if (auto end = received.find('\n'); end != std::string::npos) {
            reply = {AgentReply::Status::answered, received.substr(0, end)};
            break;
        }
    }
    ::close(fd);
    return reply;
}

bool takeAgentLock(const std::string& lockPath) {
    // The descriptor stays open (and the lock held) until the process ends.
    const int fd = ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) return false;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        return false;
    }
    return true;
}

bool agentLockIsHeld(const std::string& lockPath) {
    const int fd = ::open(lockPath.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) return false;
    const bool held = ::flock(fd, LOCK_EX | LOCK_NB) != 0;
    ::close(fd);
    return held;
}

}  // namespace kro
