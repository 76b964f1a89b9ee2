#include "cli/AgentStart.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/AgentChannel.h"

namespace kro::cli {

std::string selfPath() {
    char buffer[4096];
    const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    return n > 0 ? std::string(buffer, static_cast<size_t>(n)) : std::string("kro");
}

bool startAgent(const std::string& selfPath, const Paths& paths) {
    const pid_t child = fork();
    if (child < 0) return false;
    if (child > 0) return true;
    setsid();
    const auto logPath = paths.cacheHome + "/" + kBundleIdentifier + ".log";
    mkdir(paths.cacheHome.c_str(), 0700);
    const int log = ::open(logPath.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int null = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (null >= 0) dup2(null, 0);
    if (log >= 0) {
        dup2(log, 1);
        dup2(log, 2);
    }
    execl(selfPath.c_str(), selfPath.c_str(), static_cast<char*>(nullptr));
    _exit(127);
}

}  // namespace kro::cli
