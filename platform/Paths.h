#pragma once
#include <string>
#include <vector>

namespace kro {

// The user's folders, after the XDG base directory rules.
struct Paths {
    std::string dataHome;     // $XDG_DATA_HOME or ~/.local/share
    std::string configHome;   // $XDG_CONFIG_HOME or ~/.config
    std::string cacheHome;    // $XDG_CACHE_HOME or ~/.cache
    std::string runtimeDir;   // $XDG_RUNTIME_DIR, else a private folder under the cache
    std::string desktopDir;   // XDG_DESKTOP_DIR from user-dirs.dirs, else ~/Desktop
    std::vector<std::string> dataDirs;  // $XDG_DATA_DIRS or /usr/local/share, /usr/share: installed data

    // Read from the environment of this process.
    static Paths fromEnvironment();
    // Everything under one root folder, for tests.
    static Paths underRoot(const std::string& root);
};

// The program's identifier, used for its folders, its defaults file and its autostart entry.
inline constexpr const char* kBundleIdentifier = "kroapp.Kro";

}  // namespace kro
