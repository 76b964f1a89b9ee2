#include "library/JsonDecode.h"

namespace kro {

Json parseJson(std::string_view bytes) {
    try {
        return Json::parse(bytes.begin(), bytes.end());
    } catch (const Json::exception& error) {
        throw JsonDecodeError(std::string("not JSON: ") + error.what());
    }
}

}  // namespace kro

namespace kro::json_decode {
namespace {

[[noreturn]] void wrongType(const char* key, const char* expected) {
    throw JsonDecodeError(std::string("\"") + key + "\" is not " + expected);
}

}  // namespace

const Json& object(const Json& json, const char* what) {
    if (!json.is_object()) throw JsonDecodeError(std::string(what) + " is not a dictionary");
    return json;
}

const Json* member(const Json& object, const char* key) {
    auto it = object.find(key);
    if (it == object.end() || it->is_null()) return nullptr;
    return &*it;
}

std::optional<std::string> text(const Json& object, const char* key) {
    const Json* value = member(object, key);
    if (!value) return std::nullopt;
    if (!value->is_string()) wrongType(key, "text");
    return value->get<std::string>();
}

std::optional<bool> boolean(const Json& object, const char* key) {
    const Json* value = member(object, key);
    if (!value) return std::nullopt;
    if (!value->is_boolean()) wrongType(key, "a boolean");
    return value->get<bool>();
}

std::optional<double> number(const Json& object, const char* key) {
    const Json* value = member(object, key);
    if (!value) return std::nullopt;
    if (!value->is_number()) wrongType(key, "a number");
    return value->get<double>();
}

std::optional<long long> integer(const Json& object, const char* key) {
    const Json* value = member(object, key);
    if (!value) return std::nullopt;
    if (value->is_number_integer()) return value->get<long long>();
    if (value->is_number_float()) {
        const double d = value->get<double>();
        // A whole number written with a fraction still decodes; anything else is the wrong type.
        if (d == static_cast<double>(static_cast<long long>(d)) && d > -9.2e18 && d < 9.2e18) {
            return static_cast<long long>(d);
        }
    }
    wrongType(key, "an integer");
}

std::optional<std::vector<std::string>> texts(const Json& object, const char* key) {
    const Json* value = member(object, key);
    if (!value) return std::nullopt;
    if (!value->is_array()) wrongType(key, "an array of text");
    std::vector<std::string> result;
    result.reserve(value->size());
    for (const auto& element : *value) {
        if (!element.is_string()) wrongType(key, "an array of text");
        result.push_back(element.get<std::string>());
    }
    return result;
}

}  // namespace kro::json_decode
