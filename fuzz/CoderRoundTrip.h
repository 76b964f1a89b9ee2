#pragma once
// The body every binary coder's fuzz target shares: any bytes given to the decoder must not crash, hang or
// leak; what was read must write; and what was written must read back with as many colours (up to the
// format's own limit).
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "exchange/coders/Coders.h"

template <class MakeCoder>
int fuzzCoderRoundTrip(const uint8_t* data, size_t size, MakeCoder makeCoder,
                       size_t colorLimit = std::numeric_limits<size_t>::max()) {
    const auto coder = makeCoder();
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    PAL::Palette palette;
    try {
        palette = coder->decode(bytes);
    } catch (const std::exception&) {
        return 0;  // refused: fine, as long as it neither crashed nor hung
    }
    const auto read = palette.allColors().size();
    const auto expected = read < colorLimit ? read : colorLimit;
    if (coder->decode(coder->encode(palette)).allColors().size() != expected) __builtin_trap();
    return 0;
}
