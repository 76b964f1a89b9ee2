#pragma once
// The body the text coders' fuzz targets share. Any bytes given to the decoder must not crash, hang or
// leak; what was read must write and read back with as many colours; and after that first trip through
// the writer nothing changes any more: a second trip gives the same colours, names and spaces (within
// the palette comparison's tolerance). Exceptions past the first decode escape on purpose: libFuzzer
// reports them as crashes.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "exchange/coders/Coders.h"

template <class MakeCoder>
int fuzzStableRoundTrip(const uint8_t* data, size_t size, MakeCoder makeCoder) {
    static const auto coder = makeCoder();
    PAL::Palette palette;
    try {
        palette = coder->decode(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const std::exception&) {
        return 0;  // refused: fine, as long as it neither crashed nor hung
    }
    const PAL::Palette once = coder->decode(coder->encode(palette));
    if (once.allColors().size() != palette.allColors().size()) __builtin_trap();
    const PAL::Palette twice = coder->decode(coder->encode(once));
    if (twice.name != once.name || twice.allColors() != once.allColors()) __builtin_trap();
    return 0;
}
