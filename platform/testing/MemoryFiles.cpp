#include "platform/testing/MemoryFiles.h"

namespace kro::testing {
namespace {

bool failWith(std::string* reason, const std::string& text) {
    if (reason) *reason = text;
    return false;
}

class MemoryLock final : public Files::Lock {
public:
    MemoryLock(std::shared_ptr<std::set<std::string>> held, std::string path)
        : held_(std::move(held)), path_(std::move(path)) {}
    ~MemoryLock() override { held_->erase(path_); }

private:
    std::shared_ptr<std::set<std::string>> held_;
    std::string path_;
};

}  // namespace

std::optional<std::string> MemoryFiles::read(const std::string& path, std::string* reason) const {
    auto it = files.find(path);
    if (it == files.end()) {
        failWith(reason, isDirectory(path) ? "Is a directory" : "No such file or directory");
        return std::nullopt;
    }
    return it->second;
}

bool MemoryFiles::writePiecesAtomically(const std::string& path, const std::vector<std::string_view>& pieces,
                                        std::string* reason) {
    if (!isDirectory(parentPath(path))) return failWith(reason, "No such file or directory");
    if (failWrites) return failWith(reason, failureReason);
    removeStaleTemporaries(path);
    std::string bytes;
    for (const auto piece : pieces) bytes += piece;
    files[path] = std::move(bytes);
    ++writeCount;
    return true;
}

bool MemoryFiles::move(const std::string& from, const std::string& to, std::string* reason) {
    const auto found = files.find(from);
    if (found == files.end()) return failWith(reason, "No such file or directory");
    if (failMoves) return failWith(reason, failureReason);
    files[to] = std::move(found->second);
    files.erase(from);
    return true;
}

void MemoryFiles::removeStaleTemporaries(const std::string& path) {
    const auto folder = parentPath(path);
    std::erase_if(files, [&](const auto& entry) {
        return parentPath(entry.first) == folder && isTemporaryOf(fileName(entry.first), path);
    });
}

std::unique_ptr<Files::Lock> MemoryFiles::lock(const std::string& path, std::chrono::milliseconds, std::string*) {
    if (lockedElsewhere.count(path) || !lockedHere->insert(path).second) return nullptr;
    return std::make_unique<MemoryLock>(lockedHere, path);
}

bool MemoryFiles::exists(const std::string& path) const { return files.count(path) || isDirectory(path); }

bool MemoryFiles::isDirectory(const std::string& path) const { return path == "/" || folders.count(path); }

bool MemoryFiles::createDirectories(const std::string& path, std::string* reason) {
    if (failCreateDirectories) return failWith(reason, "Permission denied");
    for (std::string p = path; !p.empty() && p != "/"; p = parentPath(p)) folders.insert(p);
    return true;
}

bool MemoryFiles::remove(const std::string& path) { return files.erase(path) > 0 || folders.erase(path) > 0; }

std::vector<std::string> MemoryFiles::list(const std::string& folder) const {
    std::set<std::string> names;
    for (const auto& [path, bytes] : files) {
        if (parentPath(path) == folder) names.insert(fileName(path));
    }
    for (const auto& path : folders) {
        if (parentPath(path) == folder) names.insert(fileName(path));
    }
    return {names.begin(), names.end()};
}

}  // namespace kro::testing
