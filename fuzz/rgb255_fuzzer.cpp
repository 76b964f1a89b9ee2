// Any bytes given to the 0...255 RGB text reader: no crash, no hang, no leak, and what it reads writes back stably.
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzCoderRoundTrip(data, size, PAL::makeRGB255Coder, roundtrip::Stable{});
}
