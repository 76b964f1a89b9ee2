// The fallback when no secret service runs: a JSON file of server, user and password entries, created with
// mode 0600 and written whole through a temporary file, so a failed write leaves the previous one.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/Files.h"
#include "platform/Json.h"
#include "platform/SecretStore.h"

namespace kro {
namespace {

class FileSecretStore final : public SecretStore {
public:
    explicit FileSecretStore(std::string path) : path_(std::move(path)) {}

    std::optional<std::string> password(const std::string& server, const std::string& user) override {
        const Json entries = read();
        for (const auto& entry : entries) {
            if (matches(entry, server, user) && entry.contains("password") && entry["password"].is_string()) {
                return entry["password"].get<std::string>();
            }
        }
        return std::nullopt;
    }

    bool setPassword(const std::string& server, const std::string& user, const std::string& password) override {
        Json entries = without(read(), server, user);
        entries.push_back({{"server", server}, {"user", user}, {"password", password}});
        return write(entries);
    }

    bool removePassword(const std::string& server, const std::string& user) override {
        const Json entries = read();
        const Json kept = without(entries, server, user);
        return kept.size() == entries.size() || write(kept);
    }

    std::string description() const override { return path_ + " (plain text, readable only by you)"; }

private:
    static bool matches(const Json& entry, const std::string& server, const std::string& user) {
        return entry.is_object() && entry.value("server", Json()) == server && entry.value("user", Json()) == user;
    }

    static Json without(const Json& entries, const std::string& server, const std::string& user) {
        Json kept = Json::array();
        for (const auto& entry : entries) {
            if (!matches(entry, server, user)) kept.push_back(entry);
        }
        return kept;
    }

    // The entries; an empty list when the file is missing or damaged.
    Json read() const {
        const int fd = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) return Json::array();
        std::string bytes;
        char buffer[4096];
        ssize_t n;
        while ((n = ::read(fd, buffer, sizeof buffer)) > 0) bytes.append(buffer, static_cast<size_t>(n));
        ::close(fd);
        Json entries = Json::parse(bytes, nullptr, false);
        return entries.is_array() ? entries : Json::array();
    }

    bool write(const Json& entries) const {
        std::error_code ignored;
        std::filesystem::create_directories(parentPath(path_), ignored);
        const std::string temporary = path_ + ".tmp";
        const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (fd < 0) return false;
        // The mode at creation is filtered by the umask and an old temporary file keeps its own: set it.
        bool ok = ::fchmod(fd, 0600) == 0;
        const std::string bytes = compactText(entries);
        size_t written = 0;
        while (ok && written < bytes.size()) {
            const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
            if (n < 0 && errno == EINTR) continue;
            ok = n > 0;
            if (ok) written += static_cast<size_t>(n);
        }
        ok = ok && ::fsync(fd) == 0;
        ok = ::close(fd) == 0 && ok;
        if (ok) ok = std::rename(temporary.c_str(), path_.c_str()) == 0;
        if (!ok) ::unlink(temporary.c_str());
        return ok;
    }

    std::string path_;
};

}  // namespace

std::unique_ptr<SecretStore> makeFileSecretStore(const std::string& path) {
    return std::make_unique<FileSecretStore>(path);
}

}  // namespace kro
