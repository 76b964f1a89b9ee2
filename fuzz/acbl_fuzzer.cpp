// Any bytes given to the acbl decoder (the format is read only): no crash, no hang, no leak.
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzCoderRoundTrip(data, size, PAL::makeACBLCoder, roundtrip::ReadOnly{});
}
