#include "exchange/gradients/CSSColorText.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <vector>

#include "exchange/coders/TextSupport.h"
#include "formats/color/NamedColors.h"

namespace PAL {

namespace {

std::optional<RGB> hexColor(std::string_view digits) {
    const bool allHex = std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isxdigit(c); });
    if (!allHex || (digits.size() != 3 && digits.size() != 4 && digits.size() != 6 && digits.size() != 8)) return std::nullopt;
    return parseHex(digits, ColorByteFormat::rgba);
}

// A number, or a percentage scaled so that 100% gives `percentScale`.
std::optional<double> amount(std::string_view token, double percentScale) {
    const bool percent = token.ends_with('%');
    if (percent) token.remove_suffix(1);
    const auto value = textfile::number(token);
    if (!value) return std::nullopt;
    return percent ? *value / 100 * percentScale : *value;
}

std::optional<RGB> functionColor(std::string_view name, std::string_view arguments) {
    std::string separated(arguments);
    std::replace_if(
        separated.begin(), separated.end(), [](char c) { return c == ',' || c == '/'; }, ' ');
    const auto tokens = textfile::words(separated);
    if (tokens.size() != 3 && tokens.size() != 4) return std::nullopt;
    double alpha = 1;
    if (tokens.size() == 4) {
        const auto value = amount(tokens[3], 1);
        if (!value) return std::nullopt;
        alpha = std::clamp(*value, 0.0, 1.0);
    }
    if (name == "rgb" || name == "rgba") {
        double unit[3];
        for (int i = 0; i < 3; ++i) {
            const auto value = amount(tokens[static_cast<std::size_t>(i)], 255);
            if (!value) return std::nullopt;
            unit[i] = std::clamp(*value / 255, 0.0, 1.0);
        }
        return RGB{unit[0], unit[1], unit[2], alpha};
    }
    if (name == "hsl" || name == "hsla") {
        std::string_view hueToken = tokens[0];
        if (hueToken.ends_with("deg")) hueToken.remove_suffix(3);
        const auto hue = textfile::number(hueToken);
        const auto saturation = amount(tokens[1], 100), lightness = amount(tokens[2], 100);
        if (!hue || !saturation || !lightness) return std::nullopt;
        RGB rgb = Color::hslDegrees(*hue - 360 * std::floor(*hue / 360), *saturation, *lightness).rgb();
        rgb.af = alpha;
        return rgb;
    }
    return std::nullopt;
}

}  // namespace

std::optional<RGB> cssColor(std::string_view text) {
    const std::string color = textfile::lowercased(textfile::trimmed(text));
    if (color.starts_with('#')) return hexColor(std::string_view(color).substr(1));
    if (color == "transparent") return RGB{0, 0, 0, 0};
    const auto open = color.find('(');
    if (open != std::string::npos) {
        if (!color.ends_with(')')) return std::nullopt;
        return functionColor(textfile::trimmed(std::string_view(color).substr(0, open)),
                             std::string_view(color).substr(open + 1, color.size() - open - 2));
    }
    if (const auto hex = kro::namedColorHex(color)) return parseHex(*hex, ColorByteFormat::rgb);
    return std::nullopt;
}

}  // namespace PAL
