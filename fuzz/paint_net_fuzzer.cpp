// Any bytes given to the PaintNET decoder: no crash, no hang, no leak, and what it reads writes back to the
// same colours (bytes with alpha).
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzCoderRoundTrip(data, size, PAL::makePaintNETCoder, roundtrip::SameColors{1e-9, true});
}
