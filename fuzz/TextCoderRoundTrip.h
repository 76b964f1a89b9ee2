#pragma once
// The body the line-based text coders' fuzz targets share: any bytes given to the decoder must not crash,
// hang or leak, and what was read must write and read back to the same colours, each component within
// `tolerance` (the precision the format writes). Alpha is compared only where the format keeps it.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "exchange/coders/Coders.h"

template <class MakeCoder>
int fuzzTextCoderRoundTrip(const uint8_t* data, size_t size, MakeCoder makeCoder, double tolerance, bool keepsAlpha) {
    static const auto coder = makeCoder();
    PAL::Palette palette;
    try {
        palette = coder->decode(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const std::exception&) {
        return 0;  // refused: fine, as long as it neither crashed nor hung
    }
    const auto read = palette.allColors();
    const auto again = coder->decode(coder->encode(palette)).allColors();
    if (again.size() != read.size()) __builtin_trap();
    for (size_t i = 0; i < read.size(); ++i) {
        if (again[i].colorSpace != read[i].colorSpace || again[i].colorComponents.size() != read[i].colorComponents.size()) __builtin_trap();
        for (size_t c = 0; c < read[i].colorComponents.size(); ++c)
            if (std::abs(again[i].colorComponents[c] - read[i].colorComponents[c]) > tolerance) __builtin_trap();
        if (keepsAlpha && std::abs(again[i].alpha - read[i].alpha) > tolerance) __builtin_trap();
    }
    return 0;
}
