// Any bytes given to the clf decoder: no crash, no hang, no leak. The format has one way to write
// each palette, so a file that reads must write back byte for byte.
#include <cstdint>
#include <string_view>

#include "exchange/coders/Coders.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto coder = PAL::makeCLFCoder();
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    PAL::Palette palette;
    try {
        palette = coder->decode(bytes);
    } catch (const std::exception&) {
        return 0;  // refused: fine, as long as it neither crashed nor hung
    }
    if (coder->encode(palette) != bytes) __builtin_trap();
    return 0;
}
