#pragma once
// Forgiving decoding of records: every key is optional and unknown keys are ignored, but a value of the
// wrong JSON type fails the whole decoding with JsonDecodeError.
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Json.h"

namespace kro {

struct JsonDecodeError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Strict JSON text to a value; throws JsonDecodeError when the bytes are not JSON.
Json parseJson(std::string_view bytes);

namespace json_decode {

// The object itself, or a JsonDecodeError naming what was expected.
const Json& object(const Json& json, const char* what);
// The value under `key`, or null when the key is absent. A JSON null counts as absent.
const Json* member(const Json& object, const char* key);

std::optional<std::string> text(const Json& object, const char* key);
std::optional<bool> boolean(const Json& object, const char* key);
std::optional<double> number(const Json& object, const char* key);
std::optional<long long> integer(const Json& object, const char* key);
std::optional<std::vector<std::string>> texts(const Json& object, const char* key);

}  // namespace json_decode
}  // namespace kro
