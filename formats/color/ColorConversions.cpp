#include "formats/color/ColorConversions.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

namespace kro {
namespace {

struct RGBA {
    double red, green, blue, alpha;
};

RGBA genericRGBComponents(const ColorValue& color) {
    auto rgb = color.usingColorSpace(ColorSpace::genericRGB());
    return {rgb.red(), rgb.green(), rgb.blue(), rgb.alpha()};
}

bool isASCII(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The text's code points; a byte that is not UTF-8 stands as a code point that is nothing in particular.
std::vector<UChar32> codePoints(std::string_view text) {
    std::vector<UChar32> points;
    int32_t length = static_cast<int32_t>(std::min<size_t>(text.size(), std::numeric_limits<int32_t>::max()));
    for (int32_t i = 0; i < length;) {
        UChar32 c;
        U8_NEXT(text.data(), i, length, c);
        points.push_back(c);
    }
    return points;
}

// Calls `read` with the text as a range of characters: its bytes when it is ASCII (the usual case, and
// no copy), else its code points.
template <typename Read>
auto withCharacters(std::string_view text, Read read) {
    if (isASCII(text)) return read(text.data(), text.data() + text.size());
    auto points = codePoints(text);
    return read(points.data(), points.data() + points.size());
}

UChar32 codePoint(char c) { return static_cast<unsigned char>(c); }
UChar32 codePoint(UChar32 c) { return c; }

// White space and line breaks, as a text scanner skips them and trimming removes them.
bool isSpace(UChar32 c) {
    if (c < 0x80) return c == ' ' || (c >= '\t' && c <= '\r');
    return u_isUWhiteSpace(c);
}

int hexDigit(UChar32 c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

template <typename Char>
std::optional<std::uint64_t> scanHex(const Char* begin, const Char* end) {
    const Char* p = begin;
    while (p != end && isSpace(codePoint(*p))) ++p;
    if (end - p >= 2 && codePoint(p[0]) == '0' && (codePoint(p[1]) == 'x' || codePoint(p[1]) == 'X')) {
        if (end - p == 2 || hexDigit(codePoint(p[2])) < 0) return 0;  // the "0" is the number
        p += 2;
    }
    if (p == end || hexDigit(codePoint(*p)) < 0) return std::nullopt;
    std::uint64_t value = 0;
    bool overflow = false;
    for (; p != end && hexDigit(codePoint(*p)) >= 0; ++p) {
        if (value > (std::numeric_limits<std::uint64_t>::max() >> 4)) overflow = true;
        value = (value << 4) | static_cast<std::uint64_t>(hexDigit(codePoint(*p)));
    }
    return overflow ? std::numeric_limits<std::uint64_t>::max() : value;
}

// lroundf(component × 255) as "%02X" prints it: the low 32 bits, so −1 reads "FFFFFFFF".
std::string byteText(double component) {
    long rounded = std::lroundf(static_cast<float>(component) * 255.0f);
    char text[16];
    std::snprintf(text, sizeof text, "%02X", static_cast<unsigned>(static_cast<unsigned long>(rounded)));
    return text;
}

}  // namespace

CMYKValues cmyk(const ColorValue& color) {
    auto [red, green, blue, alpha] = genericRGBComponents(color);
    double k = 1 - std::max({red, green, blue});
    CMYKValues values;
    if (k != 1) {
        values.cyan = std::round((1 - red - k) / (1 - k) * 100);
        values.magenta = std::round((1 - green - k) / (1 - k) * 100);
        values.yellow = std::round((1 - blue - k) / (1 - k) * 100);
    }
    values.black = std::round(k * 100);
    values.alpha = alpha;
    return values;
}

HSLValues hsl(const ColorValue& color) {
    auto [red, green, blue, alpha] = genericRGBComponents(color);
    double max = std::max({red, green, blue});
    double min = std::min({red, green, blue});
    double l = 0.5 * (max + min);
    double hue = 0, saturation = 0;
    if (max != min) {
        double d = max - min;
        saturation = l > 0.5 ? d / (2 - max - min) : d / (max + min);
        if (max == red) {
            hue = (green - blue) / d + (green < blue ? 6 : 0);
        } else if (max == green) {
            hue = (blue - red) / d + 2;
        } else {
            hue = (red - green) / d + 4;
        }
    }
    return {hue / 6 * 360, saturation * 100, l * 100, alpha};
}

HWBValues hwb(const ColorValue& color) {
    auto [red, green, blue, alpha] = genericRGBComponents(color);
    double max = std::max({red, green, blue});
    double min = std::min({red, green, blue});
    double d = max - min;
    double hue = 0;
    if (d != 0) {
        if (red == max) {
            hue = (green - blue) / d / 6 * 3.6;
        } else if (green == max) {
            hue = ((blue - red) / d + 2) / 6 * 3.6;
        } else {
            hue = ((red - green) / d + 4) / 6 * 3.6;
        }
    }
    return {std::round(hue * 100), std::round(min * 100), std::round((1 - max) * 100), alpha};
}

std::string hexText(const ColorValue& color) {
    auto rgb = color.usingColorSpace(ColorSpace::sRGB());
    return hexText(rgb.red(), rgb.green(), rgb.blue());
}

std::string hexText(double red, double green, double blue) {
    return byteText(red) + byteText(green) + byteText(blue);
}

ColorValue colorFromHex(std::string_view text) {
    std::uint64_t value = withCharacters(text, [](auto begin, auto end) {
        while (begin != end && isSpace(codePoint(*begin))) ++begin;
        while (end != begin && isSpace(codePoint(end[-1]))) --end;
        if (begin != end && codePoint(*begin) == '#') ++begin;
        return scanHex(begin, end).value_or(0);
    });
    auto byte = [&](int shift) { return static_cast<double>((value >> shift) & 0xFF) / 255.0; };
    return ColorValue::rgb(byte(16), byte(8), byte(0), 1.0);
}

std::optional<std::uint64_t> scanHexNumber(std::string_view text) {
    return withCharacters(text, [](auto begin, auto end) { return scanHex(begin, end); });
}

std::array<int, 3> scanHexPairs(std::string_view text) {
    return withCharacters(text, [](auto begin, auto end) {
        std::array<int, 3> values{};
        size_t length = static_cast<size_t>(end - begin);
        for (size_t pair = 0; pair < 3; ++pair) {
            size_t first = std::min(pair * 2, length);
            size_t last = std::min(first + 2, length);
            values[pair] = static_cast<int>(scanHex(begin + first, begin + last).value_or(0));
        }
        return values;
    });
}

}  // namespace kro
