#include "bridges/KritaPluginFiles.h"

#include "platform/Environment.h"
#include "platform/Resources.h"

namespace kro::KritaPluginFiles {
namespace {

struct PluginFile {
    const char* path;      // in the pykrita folder
    const char* resource;  // the shipped file
};

constexpr PluginFile kFiles[] = {
    {"kro_bridge.desktop", "kro_bridge.desktop"},
    {"kro_bridge/__init__.py", "__init__.py"},
    {"kro_bridge/kro_bridge_server.py", "kro_bridge_server.py"},
};

}  // namespace

std::string pykritaFolder() { return joinPath(env().paths.dataHome, "krita/pykrita"); }

std::vector<std::string> files() {
    std::vector<std::string> paths;
    for (const auto& file : kFiles) paths.push_back(file.path);
    return paths;
}

bool install(std::string& error) {
    auto& files = *env().files;
    const auto folder = pykritaFolder();
    if (!files.createDirectories(joinPath(folder, "kro_bridge"))) {
        error = "cannot make the folder " + joinPath(folder, "kro_bridge");
        return false;
    }
    for (const auto& file : kFiles) {
        const auto bytes = resource(file.resource);
        const auto path = joinPath(folder, file.path);
        if (!bytes || !files.writeAtomically(path, std::string(*bytes))) {
            error = "cannot write " + path;
            return false;
        }
    }
    return true;
}

bool remove(std::string& error) {
    auto& files = *env().files;
    const auto folder = pykritaFolder();
    for (const auto& file : kFiles) {
        const auto path = joinPath(folder, file.path);
        if (files.exists(path) && !files.remove(path)) {
            error = "cannot remove " + path;
            return false;
        }
    }
    // Python leaves its compiled cache beside the module.
    const auto module = joinPath(folder, "kro_bridge");
    for (const auto& cache : {joinPath(module, "__pycache__"), module}) {
        if (!files.isDirectory(cache)) continue;
        for (const auto& name : files.list(cache)) files.remove(joinPath(cache, name));
        if (!files.remove(cache)) {
            error = "cannot remove " + cache;
            return false;
        }
    }
    return true;
}

}  // namespace kro::KritaPluginFiles
