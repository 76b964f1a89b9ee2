// Any bytes given to the vga24bit decoder: no crash, no hang, no leak.
#include <cstdint>
#include <string_view>

#include "exchange/coders/Coders.h"

static size_t expectedCount(const PAL::Palette& palette) { return palette.allColors().size(); }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto coder = PAL::makeVGA24BitCoder();
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    PAL::Palette palette;
    try {
        palette = coder->decode(bytes);
    } catch (const std::exception&) {
        return 0;  // refused: fine, as long as it neither crashed nor hung
    }
    // What was read must write, and what was written must read back with as many colours.
    const auto written = coder->encode(palette);
    if (coder->decode(written).allColors().size() != expectedCount(palette)) __builtin_trap();
    return 0;
}
