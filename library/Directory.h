#pragma once
// Where the stores live: version folders under the application folder in the user's data directory
// ($XDG_DATA_HOME/kroapp.Kro/v5). Saving always goes to the present version; loading tries the load list.
#include <optional>
#include <string>
#include <vector>

namespace kro {

struct DirectoryLoadRow {
    std::string version;
    // A store found in this row is written to the present version once loaded.
    bool migrating = false;
};

class Directory {
public:
    static constexpr const char* currentVersion = "v5";

    // The application folder, one level above the version folders; nothing when there is no data directory.
    static std::optional<std::string> applicationFolder();
    // The folder of a version. Creating it is left to the caller.
    static std::optional<std::string> folder(const std::string& version);
    // "v5" (not migrating), then "v4" (migrating).
    static const std::vector<DirectoryLoadRow>& loadList();
    // Removes the contents of both version folders, for a full reset. False when something stayed.
    static bool removeAll();
};

}  // namespace kro
