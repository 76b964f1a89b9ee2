#include "platform/AgentChannel.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
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

std::optional<std::string> sendToAgent(const std::string& socketPath, const std::string& line, double timeoutSeconds) {
    sockaddr_un address{};
    if (socketPath.size() >= sizeof(address.sun_path)) return std::nullopt;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size() + 1);

    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return std::nullopt;
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd);
        return std::nullopt;
    }
    const std::string request = line + "\n";
    size_t sent = 0;
    while (sent < request.size()) {
        const ssize_t n = ::send(fd, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            ::close(fd);
            return std::nullopt;
        }
        sent += static_cast<size_t>(n);
    }
    std::string reply;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(timeoutSeconds);
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
        reply.append(buffer, static_cast<size_t>(n));
        if (auto end = reply.find('\n'); end != std::string::npos) {
            ::close(fd);
            return reply.substr(0, end);
        }
    }
    ::close(fd);
    return std::nullopt;
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
