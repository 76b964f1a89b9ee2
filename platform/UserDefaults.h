#pragma once
#include <optional>
#include <string>

namespace kro {

// A persistent key-to-bytes map. Most keys hold bytes (JSON-encoded values); a few hold a plain boolean.
// A key holding one kind reads as missing through the other kind's accessor.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    virtual std::optional<std::string> data(const std::string& key) const = 0;
    virtual void setData(const std::string& key, const std::string& bytes) = 0;
    virtual std::optional<bool> boolean(const std::string& key) const = 0;
    virtual void setBoolean(const std::string& key, bool value) = 0;
    virtual void remove(const std::string& key) = 0;
    // Forces what was set to disk now.
    virtual void synchronize() = 0;
};

}  // namespace kro
