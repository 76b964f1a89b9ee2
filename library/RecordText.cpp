#include "library/RecordText.h"

#include <cmath>

#include <nlohmann/detail/conversions/to_chars.hpp>

#include "platform/Json.h"

namespace kro::record_text {

void appendString(std::string& out, const std::string& value) {
    // Plain printable ASCII needs no escaping; anything else goes through the JSON library's own writer.
    for (unsigned char c : value) {
        if (c < 0x20 || c > 0x7E || c == '"' || c == '\\') {
            out += compactText(Json(value));
            return;
        }
    }
    out += '"';
    out += value;
    out += '"';
}

void appendStrings(std::string& out, const std::vector<std::string>& values) {
    out += '[';
    for (size_t i = 0; i < values.size(); ++i) {
        if (i) out += ',';
        appendString(out, values[i]);
    }
    out += ']';
}

void appendFloat(std::string& out, float value) {
    const double number = floatJson(value).get<double>();
    if (!std::isfinite(number)) {
        out += "null";
        return;
    }
    // The number formatting the JSON library's writer uses, so the text matches its dump exactly.
    char buffer[64];
    char* end = nlohmann::detail::to_chars(buffer, buffer + sizeof buffer, number);
    out.append(buffer, end);
}

void appendKey(std::string& out, const char* key, bool& first) {
    if (!first) out += ',';
    first = false;
    out += '"';
    out += key;
    out += "\":";
}

}  // namespace kro::record_text
