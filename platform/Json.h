#pragma once
#include <nlohmann/json.hpp>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/Clock.h"

namespace kro {

// Key order is part of every stored form, so every record is written through ordered_json.
using Json = nlohmann::ordered_json;

// A 32-bit float as the JSON number whose text is the float's shortest round-trip form
// (0.69f is written 0.69, not 0.6899999976158142).
Json floatJson(float value);

// Compact text, as every store is written.
std::string compactText(const Json& json);

// Dates in records: "yyyy-MM-dd'T'HH:mm:ss'Z'" in UTC, whole seconds.
std::string dateText(TimePoint time);
std::optional<TimePoint> parseDateText(const std::string& text);

// A fresh upper-case canonical UUID (8-4-4-4-12), version 4.
std::string newUUID();
// The same as its sixteen bytes, for records made by the hundred thousand, and their canonical text.
using UUIDBytes = std::array<std::uint8_t, 16>;
UUIDBytes newUUIDBytes();
std::string uuidText(const UUIDBytes& bytes);

}  // namespace kro
