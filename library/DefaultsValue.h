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

// JSON forms of stored values. `decode` gives nothing for a value of the wrong shape.
template <class T>
struct DefaultsCodec;

template <>
struct DefaultsCodec<bool> {
    static Json encode(bool value) { return value; }
    static std::optional<bool> decode(const Json& json) {
        return json.is_boolean() ? std::optional<bool>(json.get<bool>()) : std::nullopt;
    }
};
template <>
struct DefaultsCodec<int> {
    static Json encode(int value) { return value; }
    static std::optional<int> decode(const Json& json);
};
template <>
struct DefaultsCodec<double> {
    static Json encode(double value) { return value; }
    static std::optional<double> decode(const Json& json) {
        return json.is_number() ? std::optional<double>(json.get<double>()) : std::nullopt;
    }
};
template <>
struct DefaultsCodec<std::string> {
    static Json encode(const std::string& value) { return value; }
    static std::optional<std::string> decode(const Json& json) {
        return json.is_string() ? std::optional<std::string>(json.get<std::string>()) : std::nullopt;
    }
};
template <>
struct DefaultsCodec<std::vector<std::string>> {
    static Json encode(const std::vector<std::string>& value) { return value; }
    static std::optional<std::vector<std::string>> decode(const Json& json);
};
// An absent value is stored as JSON null.
template <class T>
struct DefaultsCodec<std::optional<T>> {
    static Json encode(const std::optional<T>& value) { return value ? DefaultsCodec<T>::encode(*value) : Json(nullptr); }
    static std::optional<std::optional<T>> decode(const Json& json) {
        if (json.is_null()) return std::optional<T>();
        auto value = DefaultsCodec<T>::decode(json);
        if (!value) return std::nullopt;
        return std::optional<T>(std::move(*value));
    }
};

// A stored enumeration: its text. `Enum` provides text(value) and a parse function.
template <class Enum, std::optional<Enum> (*parse)(const std::string&)>
struct DefaultsEnumCodec {
    static Json encode(Enum value) { return text(value); }
    static std::optional<Enum> decode(const Json& json) {
        return json.is_string() ? parse(json.get<std::string>()) : std::nullopt;
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
    auto value = Codec::decode(*json);
    if (!value) {
        Sherlog::print("load " + std::string(logName) + ": value does not decode", level, "Kro/Preferences+Helper",
                       function, __LINE__);
        return;
    }
    field = std::move(*value);
    Sherlog::print("load " + std::string(logName) + ": " + defaultsLogText(Codec::encode(field)), level,
                   "Kro/Preferences+Helper", function, __LINE__);
}

}  // namespace kro
