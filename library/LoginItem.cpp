#include "library/LoginItem.h"

#include <filesystem>
#include <system_error>
#include <vector>

#include "platform/Environment.h"
#include "platform/Paths.h"

namespace kro {
namespace {

// Quoting of an Exec argument by the desktop entry rules ("%" is a field code there, so it is doubled).
std::string quotedArgument(const std::string& path) {
    std::string argument;
    for (char c : path) {
        argument += c;
        if (c == '%') argument += '%';
    }
    if (argument.find_first_of(" \t\n\"'\\><~|&;$*?#()`") == std::string::npos) return argument;
    std::string quoted = "\"";
    for (char c : argument) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') quoted += '\\';
        quoted += c;
    }
    // In a desktop file a backslash itself is escaped once more.
    std::string escaped;
    for (char c : quoted + "\"") {
        if (c == '\\') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

}  // namespace

std::string LoginItem::entryPath() {
    return joinPath(joinPath(env().paths.configHome, "autostart"), std::string(kBundleIdentifier) + ".desktop");
}

bool LoginItem::isEnabled() { return env().files->read(entryPath()).has_value(); }

bool LoginItem::setEnabled(bool enabled) {
    auto& files = *env().files;
    const auto path = entryPath();
    if (!enabled) {
        if (files.exists(path)) files.remove(path);
        return !files.exists(path);
    }
    if (!files.isDirectory(parentPath(path)) && !files.createDirectories(parentPath(path))) return false;
    const auto installed = installedEntryText();
    return files.writeAtomically(path, installed ? entryTextFromInstalled(*installed) : entryText(executablePath()));
}

std::optional<std::string> LoginItem::installedEntryText() {
    const auto& paths = env().paths;
    std::vector<std::string> dataFolders{paths.dataHome};
    dataFolders.insert(dataFolders.end(), paths.dataDirs.begin(), paths.dataDirs.end());
    const auto name = std::string(kBundleIdentifier) + ".desktop";
    for (const auto& folder : dataFolders) {
        if (auto text = env().files->read(joinPath(joinPath(folder, "applications"), name))) return text;
    }
    return std::nullopt;
}

std::string LoginItem::entryTextFromInstalled(const std::string& installedEntry) {
    std::string mainGroup;
    size_t start = 0;
    bool inMainGroup = false;
    while (start < installedEntry.size()) {
        auto end = installedEntry.find('\n', start);
        if (end == std::string::npos) end = installedEntry.size();
        const auto line = installedEntry.substr(start, end - start);
        if (line.starts_with("[")) inMainGroup = line == "[Desktop Entry]";
        // Blank lines, the actions' groups and any autostart mark of the entry's own are left out.
        if (inMainGroup && !line.empty() && !line.starts_with("X-GNOME-Autostart-enabled=")) mainGroup += line + "\n";
        start = end + 1;
    }
    return mainGroup + "X-GNOME-Autostart-enabled=true\n";
}

std::string LoginItem::entryText(const std::string& executable) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Kro\n"
           "Comment=Color picker and palettes\n"
           "Exec=" + quotedArgument(executable) + "\n"
           "Icon=kroapp.Kro\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

std::string LoginItem::executablePath() {
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) return "kro";
    // The agent runs as kro-agent, which `kro` with no command becomes; in a build folder the two are side by side.
    const auto command = self.parent_path() / "kro";
    if (std::filesystem::is_regular_file(command, error)) return command.string();
    return "kro";
}

}  // namespace kro
