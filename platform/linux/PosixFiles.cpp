#include "platform/linux/PosixFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

namespace kro {

namespace {

// errno's words, kept for the caller when it asked.
bool failWith(std::string* reason, int error) {
    if (reason) *reason = std::strerror(error);
    return false;
}
std::nullopt_t noText(std::string* reason, int error) {
    failWith(reason, error);
    return std::nullopt;
}

// An open descriptor that is closed however the function leaves.
struct Descriptor {
    int fd;
    ~Descriptor() {
        if (fd >= 0) ::close(fd);
    }
};

// Writes the pieces one after the other, as many to a call as the system takes; 0, or why not.
int writeAll(int fd, const std::vector<std::string_view>& pieces) {
    constexpr size_t batch = 512;  // well under IOV_MAX
    size_t next = 0, offset = 0;  // the first byte not yet written: piece `next`, at `offset`
    while (next < pieces.size()) {
        iovec vectors[batch];
        int count = 0;
        for (size_t i = next; i < pieces.size() && count < static_cast<int>(batch); ++i) {
            const size_t skip = i == next ? offset : 0;
            if (pieces[i].size() == skip) continue;
            vectors[count++] = {const_cast<char*>(pieces[i].data() + skip), pieces[i].size() - skip};
        }
        if (count == 0) return 0;
        const ssize_t n = ::writev(fd, vectors, count);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return n < 0 ? errno : ENOSPC;
        // Steps past what was written, which may end inside a piece.
        auto written = static_cast<size_t>(n);
        while (next < pieces.size() && written >= pieces[next].size() - offset) {
            written -= pieces[next].size() - offset;
            ++next, offset = 0;
        }
        offset += written;
    }
    return 0;
}

class FlockLock final : public Files::Lock {
public:
    explicit FlockLock(int fd) : fd_(fd) {}
    ~FlockLock() override { ::close(fd_); }

private:
    int fd_;
};

}  // namespace

std::optional<std::string> PosixFiles::read(const std::string& path, std::string* reason) const {
    const Descriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    if (file.fd < 0) return noText(reason, errno);
    struct stat info {};
    if (fstat(file.fd, &info) != 0) return noText(reason, errno);
    if (S_ISDIR(info.st_mode)) return noText(reason, EISDIR);
    std::string out;
    char buffer[65536];
    for (;;) {
        const ssize_t n = ::read(file.fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return noText(reason, errno);
        if (n == 0) break;
        out.append(buffer, static_cast<size_t>(n));
    }
    return out;
}

bool PosixFiles::writePiecesAtomically(const std::string& path, const std::vector<std::string_view>& pieces,
                                       std::string* reason) {
    removeStaleTemporaries(path);
    const std::string folder = parentPath(path).empty() ? "." : parentPath(path);
    std::string temporary = joinPath(folder, "." + fileName(path) + ".XXXXXX");
    const int fd = mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) return failWith(reason, errno);
    // Held while the file is being filled, so that another writer's clean-up leaves it alone.
    flock(fd, LOCK_EX | LOCK_NB);
    int error = writeAll(fd, pieces);
    // A store keeps the permissions of the file it replaces, else the usual 0644 less the umask.
    struct stat previous {};
    if (::stat(path.c_str(), &previous) == 0) {
        fchmod(fd, previous.st_mode & 07777);
    } else {
        const mode_t mask = umask(0);
        umask(mask);
        fchmod(fd, 0666 & ~mask);
    }
    // A full disk may only show when the data is flushed or the file closed.
    if (!error && fsync(fd) != 0) error = errno;
    if (::close(fd) != 0 && !error) error = errno;
    if (!error && ::rename(temporary.c_str(), path.c_str()) != 0) error = errno;
    if (error) {
        ::unlink(temporary.c_str());
        return failWith(reason, error);
    }
    return true;
}

bool PosixFiles::move(const std::string& from, const std::string& to, std::string* reason) {
    return ::rename(from.c_str(), to.c_str()) == 0 || failWith(reason, errno);
}

void PosixFiles::removeStaleTemporaries(const std::string& path) {
    const std::string folder = parentPath(path).empty() ? "." : parentPath(path);
    for (const auto& name : list(folder)) {
        if (!isTemporaryOf(name, path)) continue;
        const auto temporary = joinPath(folder, name);
        const Descriptor file{::open(temporary.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW)};
        // A writer at work holds its temporary file's lock; a killed one held it no longer.
        if (file.fd >= 0 && flock(file.fd, LOCK_EX | LOCK_NB) == 0) ::unlink(temporary.c_str());
    }
}

std::unique_ptr<Files::Lock> PosixFiles::lock(const std::string& path, std::chrono::milliseconds wait,
                                              std::string* reason) {
    if (reason) reason->clear();
    int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    const int makeError = errno;
    // An existing lock file on a read-only disk still locks.
    if (fd < 0) fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        failWith(reason, makeError);
        return nullptr;
    }
    const auto deadline = std::chrono::steady_clock::now() + wait;
    for (;;) {
        if (flock(fd, LOCK_EX | LOCK_NB) == 0) return std::make_unique<FlockLock>(fd);
        const bool held = errno == EWOULDBLOCK || errno == EINTR;
        if (!held || std::chrono::steady_clock::now() >= deadline) {
            ::close(fd);
            return nullptr;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

bool PosixFiles::exists(const std::string& path) const {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

bool PosixFiles::isDirectory(const std::string& path) const {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool PosixFiles::createDirectories(const std::string& path, std::string* reason) {
    if (path.empty()) return failWith(reason, ENOENT);
    if (isDirectory(path)) return true;
    const auto parent = parentPath(path);
    if (!parent.empty() && parent != path && !createDirectories(parent, reason)) return false;
    if (::mkdir(path.c_str(), 0755) == 0) return true;
    if (errno != EEXIST) return failWith(reason, errno);
    return isDirectory(path) || failWith(reason, ENOTDIR);
}

bool PosixFiles::remove(const std::string& path) {
    return ::unlink(path.c_str()) == 0 || ::rmdir(path.c_str()) == 0;
}

std::vector<std::string> PosixFiles::list(const std::string& folder) const {
    std::vector<std::string> names;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) return names;
    while (auto* entry = ::readdir(dir)) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    ::closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace kro
