// GIMP palette reader on arbitrary bytes: it either reads a palette or refuses with an error, and what it
// reads it can write and read back to the same colours.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "exchange/PaletteCoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto coder = PAL::coder(PAL::PaletteFormat::gimp);
    PAL::Palette palette;
    try {
        palette = coder->decode(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const std::exception&) {
        return 0;
    }
    const PAL::Palette again = coder->decode(std::string_view(coder->encode(palette)));
    if (again.colors.size() != palette.colors.size()) std::abort();
    for (size_t i = 0; i < palette.colors.size(); ++i)
        if (again.colors[i].hexString() != palette.colors[i].hexString()) std::abort();
    return 0;
}
