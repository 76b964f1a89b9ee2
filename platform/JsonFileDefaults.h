#pragma once
#include <string>

#include "platform/Files.h"
#include "platform/Json.h"
#include "platform/Paths.h"
#include "platform/UserDefaults.h"

namespace kro {

// User defaults kept in one JSON file: key to base64 text for bytes, key to true/false for a plain boolean.
// Every set writes the whole file atomically. A file that does not parse is left in place and read as empty;
// it is replaced by the next set.
class JsonFileDefaults final : public UserDefaults {
public:
    JsonFileDefaults(Files& files, std::string path);
    // The user's defaults file: $XDG_CONFIG_HOME/kroapp.Kro/defaults.json.
    static std::string pathIn(const Paths& paths);

    std::optional<std::string> data(const std::string& key) const override;
    void setData(const std::string& key, const std::string& bytes) override;
    std::optional<bool> boolean(const std::string& key) const override;
    void setBoolean(const std::string& key, bool value) override;
    void remove(const std::string& key) override;
    void synchronize() override;

    // Reads the file again (another process may have written it).
    void reload();

private:
    void write();

    Files& files_;
    std::string path_;
    Json values_ = Json::object();
};

}  // namespace kro
