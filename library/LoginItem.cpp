#include "library/LoginItem.h"

#include <filesystem>
#include <system_error>

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
    return files.writeAtomically(path, entryText(executablePath()));
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
    const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error && std::filesystem::is_regular_file(path, error)) return path.string();
    return "kro";
}

}  // namespace kro
