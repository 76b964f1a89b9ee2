#include "platform/Paths.h"

#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

namespace kro {
namespace {

std::string env(const char* name) {
    const char* value = std::getenv(name);
    return value && *value ? std::string(value) : std::string();
}

std::string home() {
    auto value = env("HOME");
    return value.empty() ? std::string("/tmp") : value;
}

std::string orDefault(const char* name, const std::string& fallback) {
    auto value = env(name);
    // The XDG rules ignore relative paths.
    return !value.empty() && value[0] == '/' ? value : fallback;
}

// XDG_DESKTOP_DIR="$HOME/Desktop" in user-dirs.dirs, as xdg-user-dirs writes it.
std::string desktopFrom(const std::string& configHome, const std::string& homeDir) {
    std::ifstream in(configHome + "/user-dirs.dirs");
    std::string line;
    while (std::getline(in, line)) {
        const std::string key = "XDG_DESKTOP_DIR=";
        if (line.rfind(key, 0) != 0) continue;
        std::string value = line.substr(key.size());
        if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
        if (value.rfind("$HOME", 0) == 0) value = homeDir + value.substr(5);
        if (!value.empty() && value[0] == '/') return value;
    }
    return homeDir + "/Desktop";
}

// The folders of $XDG_DATA_DIRS in order; relative ones are ignored, as the XDG rules say.
std::vector<std::string> dataDirsFrom(const std::string& list) {
    std::vector<std::string> dirs;
    size_t start = 0;
    while (start <= list.size()) {
        const auto colon = list.find(':', start);
        const auto dir = list.substr(start, colon == std::string::npos ? std::string::npos : colon - start);
        if (!dir.empty() && dir[0] == '/') dirs.push_back(dir);
        if (colon == std::string::npos) break;
        start = colon + 1;
    }
    if (dirs.empty()) dirs = {"/usr/local/share", "/usr/share"};
    return dirs;
}

}  // namespace

Paths Paths::fromEnvironment() {
    Paths paths;
    const auto homeDir = home();
    paths.dataHome = orDefault("XDG_DATA_HOME", homeDir + "/.local/share");
    paths.configHome = orDefault("XDG_CONFIG_HOME", homeDir + "/.config");
    paths.cacheHome = orDefault("XDG_CACHE_HOME", homeDir + "/.cache");
    paths.runtimeDir = orDefault("XDG_RUNTIME_DIR", paths.cacheHome + "/" + kBundleIdentifier + "-runtime-" + std::to_string(getuid()));
    paths.desktopDir = desktopFrom(paths.configHome, homeDir);
    paths.dataDirs = dataDirsFrom(env("XDG_DATA_DIRS"));
    return paths;
}

Paths Paths::underRoot(const std::string& root) {
    return Paths{root + "/data", root + "/config", root + "/cache", root + "/runtime", root + "/Desktop", {root + "/system"}};
}

}  // namespace kro
