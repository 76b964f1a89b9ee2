// Any bytes given to the acb decoder: no crash, no hang, no leak.
#include <cstdint>
#include <string_view>

#include "exchange/coders/Coders.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto coder = PAL::makeACBCoder();
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        coder->decode(bytes);
    } catch (const std::exception&) {
        // refused: fine, as long as it neither crashed nor hung
    }
    return 0;
}
