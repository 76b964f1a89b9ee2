#include "platform/Files.h"

namespace kro {

std::string parentPath(const std::string& path) {
    auto slash = path.find_last_of('/');
    if (slash == std::string::npos) return "";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

std::string fileName(const std::string& path) {
    auto slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string fileExtension(const std::string& path) {
    auto name = fileName(path);
    auto dot = name.find_last_of('.');
    if (dot == std::string::npos || dot == 0) return "";
    return name.substr(dot + 1);
}

std::string joinPath(const std::string& folder, const std::string& name) {
    if (folder.empty()) return name;
    if (folder.back() == '/') return folder + name;
    return folder + "/" + name;
}

bool isTemporaryOf(const std::string& name, const std::string& target) {
    const std::string prefix = "." + fileName(target) + ".";
    if (name.size() != prefix.size() + 6 || name.compare(0, prefix.size(), prefix) != 0) return false;
    for (size_t i = prefix.size(); i < name.size(); ++i) {
        const char c = name[i];
        if (!((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))) return false;
    }
    return true;
}

}  // namespace kro
