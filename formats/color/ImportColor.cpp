#include "formats/color/ImportColor.h"

#include <unicode/locid.h>
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <optional>
#include <string>

#include "formats/color/ColorConversions.h"
#include "formats/color/NamedColors.h"

namespace kro::ImportColor {
namespace {

// The matching work one recogniser may spend on one text, in ICU's units of ten thousand steps, counted
// over all the searches of its matcher. Ordinary text costs about one unit per 10 KB, so some 2 MB are read
// in full; text made to backtrack without end stops after a few tens of milliseconds.
constexpr int32_t kMatchTimeLimit = 200;

using Numbers = std::vector<std::string>;
using Recognise = std::optional<ColorValue> (*)(const icu::UnicodeString& match);

struct Recogniser {
    ImportColorPattern kind;
    const char* expression;
    Recognise recognise;
};

std::unique_ptr<const icu::RegexPattern> compile(const char* expression) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<const icu::RegexPattern> pattern(
        icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(expression), 0, status));
    if (U_FAILURE(status)) return nullptr;
    return pattern;
}

// Calls `found` with each match of `pattern` in `text`, in order. Running out of time or of backtracking
// stack ends the scan; the matches before it are kept.
template <class Found>
void forEachMatch(const icu::RegexPattern* pattern, const icu::UnicodeString& text, Found&& found) {
    if (!pattern) return;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(text, status));
    if (U_FAILURE(status)) return;
    matcher->setTimeLimit(kMatchTimeLimit, status);
    while (U_SUCCESS(status) && matcher->find(status) && U_SUCCESS(status)) {
        found(matcher->group(status));
    }
}

// How the numbers are taken out of a match.
enum class NumberShape { upToThreeDigits, upToFiveDigits, unitFraction };

// The texts of the numbers in a match, taken out with a second expression.
Numbers numbers(const icu::UnicodeString& match, NumberShape shape) {
    static const auto upToThreeDigits = compile("\\d{1,3}");
    static const auto upToFiveDigits = compile("\\d{1,5}");
    static const auto unitFraction = compile("\\d{1}\\.{0,1}\\d{0,5}");
    const icu::RegexPattern* pattern = shape == NumberShape::upToThreeDigits  ? upToThreeDigits.get()
                                       : shape == NumberShape::upToFiveDigits ? upToFiveDigits.get()
                                                                              : unitFraction.get();
    Numbers result;
    forEachMatch(pattern, match, [&](const icu::UnicodeString& number) {
        std::string text;
        number.toUTF8String(text);
        result.push_back(std::move(text));
    });
    return result;
}

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

std::optional<ColorValue> namedColor(const icu::UnicodeString& word) {
    std::string lowerCase;
    icu::UnicodeString(word).toLower(icu::Locale::getRoot()).toUTF8String(lowerCase);
    const auto hex = namedColorHex(lowerCase);
    if (!hex) return std::nullopt;
    return colorFromHex(*hex);
}

std::optional<ColorValue> cssHexColor(const icu::UnicodeString& match) {
    std::string hex;
    match.toUTF8String(hex);
    return colorFromHex(hex);
}

std::optional<ColorValue> rgbColor(const Numbers& texts, double alpha) {
    const auto rgb = boundedWholeNumbers(texts, 3, {255, 255, 255});
    if (!rgb) return std::nullopt;
    return ColorValue::rgb((*rgb)[0] / 255.0, (*rgb)[1] / 255.0, (*rgb)[2] / 255.0, alpha);
}

std::optional<ColorValue> cssRGBColor(const icu::UnicodeString& match) { return rgbColor(numbers(match, NumberShape::upToThreeDigits), 1.0); }

std::optional<ColorValue> cssRGBAColor(const icu::UnicodeString& match) {
    const auto texts = numbers(match, NumberShape::upToFiveDigits);
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

std::optional<ColorValue> cssHSLColor(const icu::UnicodeString& match) { return hslColor(numbers(match, NumberShape::upToThreeDigits), 1.0); }

std::optional<ColorValue> cssHSLAColor(const icu::UnicodeString& match) {
    const auto texts = numbers(match, NumberShape::upToFiveDigits);
    const auto alpha = splitAlpha(texts);
    if (!alpha) return std::nullopt;
    return hslColor(texts, *alpha);
}

// Both UIColor/NSColor recognisers read their four numbers as hue, saturation, brightness and alpha,
// the RGB one included: its red, green and blue become hue, saturation and brightness. Users' imports
// depend on this, so it stays.
std::optional<ColorValue> appleColor(const icu::UnicodeString& match) {
    const auto texts = numbers(match, NumberShape::unitFraction);
    if (texts.size() < 4) return std::nullopt;
    std::array<double, 4> values{};
    for (size_t i = 0; i < values.size(); ++i) {
        const auto value = floatNumber(texts[i]);
        if (!value || *value < 0 || *value > 1) return std::nullopt;
        values[i] = *value;
    }
    return ColorValue::hsb(values[0], values[1], values[2], values[3]);
}

// The bars inside the classes are literal ("[r|R]" also matches "|"); the expressions are kept as they
// have always been, since changing them would change what users' texts import.
constexpr std::array<Recogniser, 8> kRecognisers = {{
    {ImportColorPattern::html, "\\w{1,}", namedColor},
    // Hex runs are found in the whole text at once: the separators a piece-by-piece scan would split on
    // are none of them hex digits, so the runs are the same.
    {ImportColorPattern::cssHEX, "#{0,1}([0-9a-fA-F]{6}){1}", cssHexColor},
    {ImportColorPattern::cssRGB, "[r|R]{1}[g|G]{1}[b|B]{1}\\s*\\(\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\s*\\)",
     cssRGBColor},
    {ImportColorPattern::cssRGB,
     "[r|R]{1}[g|G]{1}[b|B]{1}[a|A]{1}\\s*\\(\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\s*,\\s*\\d{1,3}\\.{0,1}\\d{0,5}\\s*\\)",
     cssRGBAColor},
    {ImportColorPattern::cssHSL, "[h|H]{1}[s|S]{1}[l|L]{1}\\s*\\(\\s*\\d{1,3}\\s*,\\s*\\d{1,3}%\\s*,\\s*\\d{1,3}%\\s*\\)",
     cssHSLColor},
    {ImportColorPattern::cssHSL,
     "[h|H]{1}[s|S]{1}[l|L]{1}[a|A]{1}\\s*\\(\\s*\\d{1,3}\\s*,\\s*\\d{1,3}%\\s*,\\s*\\d{1,3}%\\s*,\\s*\\d{1,3}\\.{0,1}\\d{0,5}\\s*\\)",
     cssHSLAColor},
    {ImportColorPattern::appleHSB, "\\s*ue\\s*:\\s*.*\\s*saturation\\s*:\\s*.*\\s*brightness\\s*:\\s*.*\\s*alpha\\s*:\\s*.*",
     appleColor},
    {ImportColorPattern::appleRGB, "\\s*ed\\s*:\\s*.*\\s*green\\s*:\\s*.*\\s*blue\\s*:\\s*.*\\s*alpha\\s*:\\s*.*", appleColor},
}};

// Compiled once and shared: a compiled pattern may be used from any thread. An expression that cannot
// be built stays null and its recogniser finds nothing.
const std::array<std::unique_ptr<const icu::RegexPattern>, kRecognisers.size()>& compiledRecognisers() {
    static const auto compiled = [] {
        std::array<std::unique_ptr<const icu::RegexPattern>, kRecognisers.size()> patterns;
        for (size_t i = 0; i < kRecognisers.size(); ++i) patterns[i] = compile(kRecognisers[i].expression);
        return patterns;
    }();
    return compiled;
}

}  // namespace

std::vector<ColorValue> colors(std::string_view text, const std::set<ImportColorPattern>& patterns) {
    const auto unicodeText = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    const auto& compiled = compiledRecognisers();
    std::vector<ColorValue> result;
    for (size_t i = 0; i < kRecognisers.size(); ++i) {
        if (!patterns.contains(kRecognisers[i].kind)) continue;
        forEachMatch(compiled[i].get(), unicodeText, [&](const icu::UnicodeString& match) {
            if (auto color = kRecognisers[i].recognise(match)) result.push_back(std::move(*color));
        });
    }
    return result;
}

}  // namespace kro::ImportColor
