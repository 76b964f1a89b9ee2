#include "library/Directory.h"

#include "platform/Environment.h"
#include "platform/Paths.h"

namespace kro {

std::optional<std::string> Directory::applicationFolder() {
    const auto& dataHome = env().paths.dataHome;
    if (dataHome.empty()) return std::nullopt;
    return joinPath(dataHome, kBundleIdentifier);
}

std::optional<std::string> Directory::folder(const std::string& version) {
    auto application = applicationFolder();
    if (!application) return std::nullopt;
    return joinPath(*application, version);
}

const std::vector<DirectoryLoadRow>& Directory::loadList() {
    static const std::vector<DirectoryLoadRow> rows = {{"v5", false}, {"v4", true}};
    return rows;
}

bool Directory::removeAll() {
    bool whole = true;
    for (const char* version : {"v4", "v5"}) {
        auto path = folder(version);
        if (!path) return false;
        for (const auto& name : env().files->list(*path)) {
            whole = env().files->remove(joinPath(*path, name)) && whole;
        }
    }
    return whole;
}

}  // namespace kro
