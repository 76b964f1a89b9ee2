// Any bytes given to the cpl decoder (the format is read only): no crash, no hang, no leak.
#include <cstdint>
#include <string_view>

#include "exchange/coders/Coders.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto coder = PAL::makeCorelPaletteCoder();
    try {
        coder->decode(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const std::exception&) {
        // refused: fine, as long as it neither crashed nor hung
    }
    return 0;
}
