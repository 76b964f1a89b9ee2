#pragma once
// Colour channels as the text formats write them: whole numbers on a scale of 255 (or 100 for
// percentages). Values outside the scale are held at its ends, and the caller is told so that it can
// say once per file that the file held values its owner never writes.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/PalColor.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

// A unit value (0...1) on a scale, rounded half away from zero.
inline int scaled(double unit, int scale) { return static_cast<int>(std::lround(std::clamp(unit, 0.0, 1.0) * scale)); }
inline int channelByte(double unit) { return scaled(unit, 255); }

// A value read from a file, held within 0...maximum; `clamped` is set when it had to be.
inline double heldWithin(double value, double maximum, bool& clamped) {
    if (value >= 0 && value <= maximum) return value;
    clamped = true;
    return std::clamp(value, 0.0, maximum);
}

// A whole number read from a file as a channel byte.
inline int heldByte(long long value, bool& clamped) {
    if (value >= 0 && value <= 255) return static_cast<int>(value);
    clamped = true;
    return value < 0 ? 0 : 255;
}

// Three words (red, green, blue) or four (then alpha) of whole decimal numbers as a colour; nullopt when
// there are not three or four, or one is not a whole number. Never octal: "051" is 51.
inline std::optional<Color> byteWordsColor(const std::vector<std::string_view>& words, bool& clamped) {
    if (words.size() != 3 && words.size() != 4) return std::nullopt;
    int values[4] = {0, 0, 0, 255};
    for (std::size_t c = 0; c < words.size(); ++c) {
        const auto value = textfile::integer(words[c]);
        if (!value) return std::nullopt;
        values[c] = heldByte(*value, clamped);
    }
    return Color::rgb255(values[0], values[1], values[2], values[3]);
}

// "R G B" with single spaces and no padding.
inline std::string byteWords(const Color& color) {
    const RGB rgb = color.rgb();
    return std::to_string(channelByte(rgb.rf)) + ' ' + std::to_string(channelByte(rgb.gf)) + ' ' + std::to_string(channelByte(rgb.bf));
}

}  // namespace PAL
