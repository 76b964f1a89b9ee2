#pragma once
// How preferences, settings and dock data live in the user defaults: each value JSON-encoded and stored as
// bytes under its own key. A missing key, a value stored in another form, or bytes that do not decode leave
// the field at its default.
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "library/Sherlog.h"
#include "platform/Json.h"

namespace kro {

// JSON forms of stored values. `decode` fills `out` and says whether the value had the right shape.
template <class T>
struct DefaultsCodec;

template <>
struct DefaultsCodec<bool> {
    static Json encode(bool value) { return value; }
    static bool decode(const Json& json, bool& out) {
        if (!json.is_boolean()) return false;
        out = json.get<bool>();
        return true;
    }
};
template <>
struct DefaultsCodec<int> {
    static Json encode(int value) { return value; }
    static bool decode(const Json& json, int& out);
};
template <>
struct DefaultsCodec<double> {
    static Json encode(double value) { return value; }
    static bool decode(const Json& json, double& out) {
        if (!json.is_number()) return false;
        out = json.get<double>();
        return true;
    }
};
template <>
struct DefaultsCodec<std::string> {
    static Json encode(const std::string& value) { return value; }
    static bool decode(const Json& json, std::string& out) {
        if (!json.is_string()) return false;
        out = json.get<std::string>();
        return true;
    }
};
template <>
struct DefaultsCodec<std::vector<std::string>> {
    static Json encode(const std::vector<std::string>& value) { return value; }
    static bool decode(const Json& json, std::vector<std::string>& out);
};
// An absent value is stored as JSON null.
template <class T>
struct DefaultsCodec<std::optional<T>> {
    static Json encode(const std::optional<T>& value) { return value ? DefaultsCodec<T>::encode(*value) : Json(nullptr); }
    static bool decode(const Json& json, std::optional<T>& out) {
        if (json.is_null()) {
            out.reset();
            return true;
        }
        T value{};
        if (!DefaultsCodec<T>::decode(json, value)) return false;
        out = std::move(value);
        return true;
    }
};

// A stored enumeration: its text, through text(value) and a parse function.
template <class Enum, std::optional<Enum> (*parse)(const std::string&)>
struct DefaultsEnumCodec {
    static Json encode(Enum value) { return text(value); }
    static bool decode(const Json& json, Enum& out) {
        if (!json.is_string()) return false;
        auto value = parse(json.get<std::string>());
        if (value) out = *value;
        return value.has_value();
    }
};

// The shared writer: stores the bytes, logs "set <logName>: <logValue>", posts the notifications in order.
void saveDefaultsValue(const Json& value, const std::string& key, const std::string& logName,
                       const std::string& logValue, std::initializer_list<const char*> notifications,
                       const char* function);
// The shared reader: the stored JSON under `key`, or nothing (logged at `level`) when it is missing or
// not JSON data.
std::optional<Json> loadDefaultsValue(const std::string& key, const std::string& logName, SherlogLevel level,
                                      const char* function);
// How a value reads in the log.
std::string defaultsLogText(const Json& value);

}  // namespace kro

namespace kro {

// A setter's steps: keep the value; unless side effects are suppressed, store it, log it and post.
template <class Codec, class T>
void writeDefaultsField(T& field, T value, bool suppressSideEffects, const char* key, const char* logName,
                        std::initializer_list<const char*> notifications, const char* function) {
    field = std::move(value);
    if (suppressSideEffects) return;
    const Json json = Codec::encode(field);
    saveDefaultsValue(json, key, logName, defaultsLogText(json), notifications, function);
}

// A loader's step for one key: the stored value when it decodes, else the field keeps its default.
template <class Codec, class T>
void readDefaultsField(T& field, const char* key, const char* logName, SherlogLevel level, const char* function) {
    auto json = loadDefaultsValue(key, logName, level, function);
    if (!json) return;
    T value = field;
    if (!Codec::decode(*json, value)) {
        Sherlog::print("load " + std::string(logName) + ": value does not decode", level, "Kro/Preferences+Helper",
                       function, __LINE__);
        return;
    }
    field = std::move(value);
    Sherlog::print("load " + std::string(logName) + ": " + defaultsLogText(Codec::encode(field)), level,
                   "Kro/Preferences+Helper", function, __LINE__);
}

}  // namespace kro
