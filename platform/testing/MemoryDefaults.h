#pragma once
#include <map>
#include <variant>

#include "platform/UserDefaults.h"

namespace kro::testing {

class MemoryDefaults final : public UserDefaults {
public:
    std::optional<std::string> data(const std::string& key) const override {
        auto it = values.find(key);
        if (it == values.end() || !std::holds_alternative<std::string>(it->second)) return std::nullopt;
        return std::get<std::string>(it->second);
    }
    void setData(const std::string& key, const std::string& bytes) override { values[key] = bytes; }
    std::optional<bool> boolean(const std::string& key) const override {
        auto it = values.find(key);
        if (it == values.end() || !std::holds_alternative<bool>(it->second)) return std::nullopt;
        return std::get<bool>(it->second);
    }
    void setBoolean(const std::string& key, bool value) override { values[key] = value; }
    void remove(const std::string& key) override { values.erase(key); }
    void synchronize() override {}

    // A plain number stands for a value some other program wrote in another form.
    std::map<std::string, std::variant<std::string, bool, double>> values;
};

}  // namespace kro::testing
