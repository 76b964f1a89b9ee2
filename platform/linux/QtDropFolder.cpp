#include "platform/linux/QtDropFolder.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iterator>

#include "platform/Environment.h"

namespace kro {
namespace {

// An answer is a line of text; anything larger is not one of ours and is not read into memory.
constexpr std::streamsize kAnswerLimit = 64 * 1024;

std::optional<std::string> readSmallFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::string contents(static_cast<size_t>(kAnswerLimit), '\0');
    file.read(contents.data(), kAnswerLimit);
    contents.resize(static_cast<size_t>(file.gcount()));
    return contents;
}

}  // namespace

QtDropFolder::~QtDropFolder() {
    notifier_.reset();
    if (inotify_ >= 0) ::close(inotify_);
}

std::string QtDropFolder::path() {
    if (!ready_) ready_ = watch();
    return ready_ ? folder_ : std::string();
}

bool QtDropFolder::watch() {
    auto& files = *env().files;
    if (!files.createDirectories(folder_) || ::chmod(folder_.c_str(), 0700) != 0) return false;
    struct stat status {};
    if (::lstat(folder_.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != ::getuid()) return false;
    for (const auto& name : files.list(folder_)) files.remove(joinPath(folder_, name));
    inotify_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (inotify_ < 0 || ::inotify_add_watch(inotify_, folder_.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO) < 0) return false;
    notifier_ = std::make_unique<QSocketNotifier>(inotify_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readEvents(); });
    return true;
}

void QtDropFolder::await(const std::string& name, Arrived arrived) { waiting_[name] = std::move(arrived); }

void QtDropFolder::forget(const std::string& name) {
    waiting_.erase(name);
    // It may have been written already and be waiting for its event.
    env().files->remove(joinPath(folder_, name));
}

void QtDropFolder::readEvents() {
    alignas(inotify_event) char buffer[16 * 1024];
    for (;;) {
        const ssize_t length = ::read(inotify_, buffer, sizeof buffer);
        if (length <= 0) return;
        for (ssize_t at = 0; at < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            if (event->len > 0) collect(event->name);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
}

void QtDropFolder::collect(const std::string& name) {
    const auto path = joinPath(folder_, name);
    const auto found = waiting_.find(name);
    if (found == waiting_.end()) {
        // Late or unknown: nobody reads it.
        env().files->remove(path);
        return;
    }
    const auto contents = readSmallFile(path);
    env().files->remove(path);
    auto arrived = std::move(found->second);
    waiting_.erase(found);
    arrived(contents.value_or(""));
}

}  // namespace kro
