#include "bridges/Bridge.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

#include "formats/color/NamedColors.h"

namespace kro {

std::string lowerCase(std::string text) {
    for (auto& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::optional<ColorValue> cssColor(const std::string& value) {
    auto text = lowerCase(value);
    if (const auto named = namedColorHex(text)) text = std::string(*named);
    if (text.size() == 4 && text[0] == '#') text = std::string("#") + text[1] + text[1] + text[2] + text[2] + text[3] + text[3];
    if (text.size() != 7 || text[0] != '#') return std::nullopt;
    int bytes[3];
    for (int i = 0; i < 3; ++i) {
        const auto pair = text.substr(1 + 2 * i, 2);
        if (!std::isxdigit(static_cast<unsigned char>(pair[0])) || !std::isxdigit(static_cast<unsigned char>(pair[1]))) {
            return std::nullopt;
        }
        bytes[i] = std::stoi(pair, nullptr, 16);
    }
    return ColorValue::rgb(bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0);
}

Rgb8 rgb8(const ColorValue& color) {
    const auto srgb = color.usingColorSpace(ColorSpace::sRGB());
    const auto byte = [](double component) { return static_cast<int>(std::lround(std::clamp(component, 0.0, 1.0) * 255)); };
    return {byte(srgb.red()), byte(srgb.green()), byte(srgb.blue())};
}

std::string cssHex(const Rgb8& color) {
    char hex[8];
    std::snprintf(hex, sizeof hex, "#%02x%02x%02x", color.red & 0xFF, color.green & 0xFF, color.blue & 0xFF);
    return hex;
}

}  // namespace kro
