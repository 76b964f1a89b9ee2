#include "formats/color/ImportColorSteps.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <charconv>

#include "formats/color/ColorConversions.h"
#include "formats/color/NamedColors.h"

namespace kro::ImportColor {
namespace {

// Numbers are read as ASCII: a digit of another script matches "\d" but does not read, which drops the
// match it is in.
std::optional<int> wholeNumber(const std::string& text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<float> floatNumber(const std::string& text) {
    float value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

// Reads the first `count` numbers as whole numbers of at most `maximum` each.
std::optional<std::vector<int>> boundedWholeNumbers(const Numbers& texts, size_t count, std::array<int, 3> maximum) {
    if (texts.size() < count) return std::nullopt;
    std::vector<int> values;
    for (size_t i = 0; i < count; ++i) {
        const auto value = wholeNumber(texts[i]);
        if (!value || *value > maximum[i]) return std::nullopt;
        values.push_back(*value);
    }
    return values;
}

// The alpha of rgba() and hsla(). Its numbers were taken as runs of digits, so "0.5" arrives as the two
// numbers 0 and 5 and is put back together; a lone fourth number is a whole alpha, 0 or 1.
std::optional<double> splitAlpha(const Numbers& texts) {
    if (texts.size() >= 5) {
        const auto alpha = floatNumber(texts[3] + "." + texts[4]);
        if (!alpha || *alpha < 0 || *alpha > 1) return std::nullopt;
        return *alpha;
    }
    if (texts.size() == 4) {
        const auto alpha = wholeNumber(texts[3]);
        if (!alpha || (*alpha != 0 && *alpha != 1)) return std::nullopt;
        return *alpha;
    }
    return std::nullopt;
}

// Lower case as ICU's root locale makes it, so that a word such as "blac\u212A" (a Kelvin sign) is black.
std::string lowerCase(std::string_view word) {
    if (std::all_of(word.begin(), word.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
        std::string lower(word);
        for (auto& c : lower) {
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        }
        return lower;
    }
    std::string lower;
    icu::UnicodeString::fromUTF8(icu::StringPiece(word.data(), static_cast<int32_t>(word.size())))
        .toLower(icu::Locale::getRoot())
        .toUTF8String(lower);
    return lower;
}

std::optional<ColorValue> namedColor(std::string_view word, const Numbers&) {
    const auto hex = namedColorHex(lowerCase(word));
    if (!hex) return std::nullopt;
    return colorFromHex(*hex);
}

std::optional<ColorValue> cssHexColor(std::string_view match, const Numbers&) { return colorFromHex(match); }

std::optional<ColorValue> rgbColor(const Numbers& texts, double alpha) {
    const auto rgb = boundedWholeNumbers(texts, 3, {255, 255, 255});
    if (!rgb) return std::nullopt;
    return ColorValue::rgb((*rgb)[0] / 255.0, (*rgb)[1] / 255.0, (*rgb)[2] / 255.0, alpha);
}

std::optional<ColorValue> cssRGBColor(std::string_view, const Numbers& texts) { return rgbColor(texts, 1.0); }

std::optional<ColorValue> cssRGBAColor(std::string_view, const Numbers& texts) {
    const auto alpha = splitAlpha(texts);
    if (!alpha) return std::nullopt;
    return rgbColor(texts, *alpha);
}

// There is no HSL constructor: the lightness and saturation are turned into HSB brightness and saturation.
std::optional<ColorValue> hslColor(const Numbers& texts, double alpha) {
    const auto hsl = boundedWholeNumbers(texts, 3, {360, 100, 100});
    if (!hsl) return std::nullopt;
    const double hue = (*hsl)[0] / 360.0;
    const double saturation = (*hsl)[1] / 100.0;
    const double lightness = (*hsl)[2] / 100.0;
    const double m = saturation * std::min(lightness, 1 - lightness);
    const double brightness = lightness + m;
    return ColorValue::hsb(hue, 2 * m / std::max(brightness, 1e-09), brightness, alpha);
}

std::optional<ColorValue> cssHSLColor(std::string_view, const Numbers& texts) { return hslColor(texts, 1.0); }

std::optional<ColorValue> cssHSLAColor(std::string_view, const Numbers& texts) {
    const auto alpha = splitAlpha(texts);
    if (!alpha) return std::nullopt;
    return hslColor(texts, *alpha);
}

// Both UIColor/NSColor recognisers read their four numbers as hue, saturation, brightness and alpha,
// the RGB one included: its red, green and blue become hue, saturation and brightness. Users' imports
// depend on this, so it stays.
std::optional<ColorValue> appleColor(std::string_view, const Numbers& texts) {
    if (texts.size() < 4) return std::nullopt;
    std::array<double, 4> values{};
    for (size_t i = 0; i < values.size(); ++i) {
        const auto value = floatNumber(texts[i]);
        if (!value || *value < 0 || *value > 1) return std::nullopt;
        values[i] = *value;
    }
    return ColorValue::hsb(values[0], values[1], values[2], values[3]);
}

}  // namespace

// The bars inside the classes are literal ("[r|R]" also matches "|"); the expressions are kept as they
// have always been, since changing them would change what users' texts import.
const std::array<Step, 8> kSteps = {{
    {ImportColorPattern::html, "\\w{1,}", NumberShape::none, namedColor},
    {ImportColorPattern::cssHEX, "#{0,1}([0-9a-fA-F]{6}){1}", NumberShape::none, cssHexColor},
    {ImportColorPattern::cssRGB, "[r|R]{1}[g|G]{1}[b|B]{1}\\s*\\(\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\s*\\)",
     NumberShape::upToThreeDigits, cssRGBColor},
    {ImportColorPattern::cssRGB,
     "[r|R]{1}[g|G]{1}[b|B]{1}[a|A]{1}\\s*\\(\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\.{0,1}\\d{0,5}\\s*\\)",
     NumberShape::upToFiveDigits, cssRGBAColor},
    {ImportColorPattern::cssHSL, "[h|H]{1}[s|S]{1}[l|L]{1}\\s*\\(\\s*\\d{1,3}\\s*,\\s*\\d{1,3}%\\s*,\\s*\\d{1,3}%\\s*\\)",
     NumberShape::upToThreeDigits, cssHSLColor},
    {ImportColorPattern::cssHSL,
     "[h|H]{1}[s|S]{1}[l|L]{1}[a|A]{1}\\s*\\(\\s*\\d{1,3}\\s*,\\s*\\d{1,3}%\\s*,\\s*\\d{1,3}%\\s*,\\s*\\d{1,3}\\.{0,1}\\d{0,5}\\s*\\)",
     NumberShape::upToFiveDigits, cssHSLAColor},
    {ImportColorPattern::appleHSB, "\\s*ue\\s*:\\s*.*\\s*saturation\\s*:\\s*.*\\s*brightness\\s*:\\s*.*\\s*alpha\\s*:\\s*.*",
     NumberShape::unitFraction, appleColor},
    {ImportColorPattern::appleRGB, "\\s*ed\\s*:\\s*.*\\s*green\\s*:\\s*.*\\s*blue\\s*:\\s*.*\\s*alpha\\s*:\\s*.*",
     NumberShape::unitFraction, appleColor},
}};

}  // namespace kro::ImportColor
