#include "platform/testing/MemoryFiles.h"

namespace kro::testing {

std::optional<std::string> MemoryFiles::read(const std::string& path) const {
    auto it = files.find(path);
    if (it == files.end()) return std::nullopt;
    return it->second;
}

bool MemoryFiles::writeAtomically(const std::string& path, const std::string& bytes) {
    if (failWrites || !isDirectory(parentPath(path))) return false;
    files[path] = bytes;
    ++writeCount;
    return true;
}

bool MemoryFiles::exists(const std::string& path) const { return files.count(path) || isDirectory(path); }

bool MemoryFiles::isDirectory(const std::string& path) const { return path == "/" || folders.count(path); }

bool MemoryFiles::createDirectories(const std::string& path) {
    if (failCreateDirectories) return false;
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
