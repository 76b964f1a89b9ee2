#pragma once
// Starting the agent at login: an XDG autostart entry, $XDG_CONFIG_HOME/autostart/kroapp.Kro.desktop.
#include <string>

namespace kro {

class LoginItem {
public:
    static std::string entryPath();
    static bool isEnabled();
    // Writes or removes the entry; true when the entry is then as asked.
    static bool setEnabled(bool enabled);
    // The entry's text for an executable path.
    static std::string entryText(const std::string& executable);
    // This program's binary: /proc/self/exe when it names a file, else "kro" (found on the PATH).
    static std::string executablePath();
};

}  // namespace kro
