#include "library/DefaultsValue.h"

#include <cmath>
#include <limits>

#include "library/JsonDecode.h"
#include "platform/Environment.h"

namespace kro {

bool DefaultsCodec<int>::decode(const Json& json, int& out) {
    double value = 0;
    if (json.is_number_integer() && !json.is_number_unsigned()) {
        value = static_cast<double>(json.get<long long>());
    } else if (json.is_number()) {
        value = json.get<double>();
    } else {
        return false;
    }
    if (std::floor(value) != value || value < std::numeric_limits<int>::min() ||
        value > std::numeric_limits<int>::max()) {
        return false;
    }
    out = static_cast<int>(value);
    return true;
}

bool DefaultsCodec<std::vector<std::string>>::decode(const Json& json, std::vector<std::string>& out) {
    if (!json.is_array()) return false;
    std::vector<std::string> result;
    for (const auto& element : json) {
        if (!element.is_string()) return false;
        result.push_back(element.get<std::string>());
    }
    out = std::move(result);
    return true;
}

std::string defaultsLogText(const Json& value) { return value.is_string() ? value.get<std::string>() : compactText(value); }

void saveDefaultsValue(const Json& value, const std::string& key, const std::string& logName,
                       const std::string& logValue, std::initializer_list<const char*> notifications,
                       const char* function) {
    env().defaults->setData(key, compactText(value));
    Sherlog::print("set " + logName + ": " + logValue, SherlogLevel::debug, "Kro/Preferences+Helper", function,
                   __LINE__);
    for (const char* name : notifications) env().notifications->post(name);
}

std::optional<Json> loadDefaultsValue(const std::string& key, const std::string& logName, SherlogLevel level,
                                      const char* function) {
    // A key that holds something other than data (a plain number or boolean) reads as missing.
    auto bytes = env().defaults->data(key);
    if (!bytes) {
        Sherlog::print("load " + logName + ": no data", level, "Kro/Preferences+Helper", function, __LINE__);
        return std::nullopt;
    }
    try {
        return parseJson(*bytes);
    } catch (const JsonDecodeError& error) {
        Sherlog::print("load " + logName + ": " + error.what(), level, "Kro/Preferences+Helper", function, __LINE__);
        return std::nullopt;
    }
}

}  // namespace kro
