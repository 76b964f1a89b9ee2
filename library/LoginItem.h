#pragma once
// Starting the agent at login: an XDG autostart entry, $XDG_CONFIG_HOME/autostart/kroapp.Kro.desktop.
// Where Kro is installed, the entry is the installed desktop entry's own, so login starts the program as the
// menu does; a build run from its folder writes one that names its binary.
#include <optional>
#include <string>

namespace kro {

class LoginItem {
public:
    static std::string entryPath();
    static bool isEnabled();
    // Writes or removes the entry; true when the entry is then as asked.
    static bool setEnabled(bool enabled);

    // The text of the installed desktop entry, from the user's data folder first, then the system's.
    static std::optional<std::string> installedEntryText();
    // The autostart entry made from an installed desktop entry: its main group, marked for autostart; the
    // actions are the menu's business.
    static std::string entryTextFromInstalled(const std::string& installedEntry);
    // The entry's text for an executable path, where no desktop entry is installed.
    static std::string entryText(const std::string& executable);
    // The `kro` command beside this program when there is one (a build run from its folder), else "kro",
    // found on the PATH.
    static std::string executablePath();
};

}  // namespace kro
