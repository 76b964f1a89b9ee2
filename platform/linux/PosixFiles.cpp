#include "platform/linux/PosixFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kro {

std::optional<std::string> PosixFiles::read(const std::string& path) const {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    struct stat info {};
    if (fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        ::close(fd);
        return std::nullopt;
    }
    std::string out;
    char buffer[65536];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) {
            ::close(fd);
            return std::nullopt;
        }
        if (n == 0) break;
        out.append(buffer, static_cast<size_t>(n));
    }
    ::close(fd);
    return out;
}

bool PosixFiles::writeAtomically(const std::string& path, const std::string& bytes) {
    std::string temporary = joinPath(parentPath(path).empty() ? "." : parentPath(path), "." + fileName(path) + ".XXXXXX");
    const int fd = mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) return false;
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        done += static_cast<size_t>(n);
    }
    // A store keeps the permissions of the file it replaces, else the usual 0644 less the umask.
    struct stat previous {};
    if (::stat(path.c_str(), &previous) == 0) {
        fchmod(fd, previous.st_mode & 07777);
    } else {
        const mode_t mask = umask(0);
        umask(mask);
        fchmod(fd, 0666 & ~mask);
    }
    const bool written = done == bytes.size() && fsync(fd) == 0;
    const bool closed = ::close(fd) == 0;
    if (!written || !closed || ::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    return true;
}

bool PosixFiles::exists(const std::string& path) const {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

bool PosixFiles::isDirectory(const std::string& path) const {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool PosixFiles::createDirectories(const std::string& path) {
    if (path.empty()) return false;
    if (isDirectory(path)) return true;
    const auto parent = parentPath(path);
    if (!parent.empty() && parent != path && !createDirectories(parent)) return false;
    return ::mkdir(path.c_str(), 0755) == 0 || (errno == EEXIST && isDirectory(path));
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
