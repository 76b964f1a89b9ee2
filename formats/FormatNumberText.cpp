#include "formats/FormatNumberText.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <locale.h>

namespace kro::FormatNumberText {

float narrowed(double value) {
    if (value > std::numeric_limits<float>::max()) return std::numeric_limits<float>::infinity();
    if (value < -std::numeric_limits<float>::max()) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(value);
}

std::string hexComponent(float component) {
    const long value = lroundf(component * 255.0f);
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.2lx", static_cast<unsigned long>(value));
    return buffer;
}

std::string integer(float value) {
    return std::to_string(lroundf(value));
}

std::string shortestFloat(float value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    if (value == 0.0f) return std::signbit(value) ? "-0.0" : "0.0";

    // Shortest round-trip digits in scientific form, "d.ddde±xx", taken apart into digits and exponent.
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
    const std::string scientific(buffer, result.ptr);
    const bool negative = scientific[0] == '-';
    const auto ePosition = scientific.find('e');
    std::string digits;
    for (size_t i = negative ? 1 : 0; i < ePosition; ++i) {
        if (scientific[i] != '.') digits.push_back(scientific[i]);
    }
    const int exponent = std::atoi(scientific.c_str() + ePosition + 1);

    std::string out = negative ? "-" : "";
    if (exponent < -4 || std::fabs(value) > 16777216.0f) {
        out += digits.substr(0, 1);
        if (digits.size() > 1) out += "." + digits.substr(1);
        char tail[16];
        std::snprintf(tail, sizeof tail, "e%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
        return out + tail;
    }
    if (exponent < 0) return out + "0." + std::string(static_cast<size_t>(-exponent - 1), '0') + digits;
    const auto integerDigits = static_cast<size_t>(exponent) + 1;
    if (digits.size() <= integerDigits) return out + digits + std::string(integerDigits - digits.size(), '0') + ".0";
    return out + digits.substr(0, integerDigits) + "." + digits.substr(integerDigits);
}

std::string rounded(float value, float places) {
    static const char* formats[] = {"%.0f", "%.1f", "%.2f", "%.3f", "%.4f", "%.5f"};
    // Truncated toward zero; anything outside 0…4 (negatives, huge values, nan) takes five places.
    const float whole = std::trunc(places);
    const int index = (whole >= 0.0f && whole <= 4.0f) ? static_cast<int>(whole) : 5;
    char buffer[512];
    std::snprintf(buffer, sizeof buffer, formats[index], static_cast<double>(value));
    return buffer;
}

namespace {
locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}
}  // namespace

std::optional<float> numberValue(std::string_view text) {
    if (text.empty()) return std::nullopt;
    const unsigned char first = static_cast<unsigned char>(text.front());
    if (first == ' ' || (first >= '\t' && first <= '\r')) return std::nullopt;
    const std::string copy(text);  // strtof needs the terminating zero
    char* end = nullptr;
    const float value = strtof_l(copy.c_str(), &end, cLocale());
    if (end != copy.c_str() + copy.size()) return std::nullopt;
    return value;
}

}  // namespace kro::FormatNumberText
