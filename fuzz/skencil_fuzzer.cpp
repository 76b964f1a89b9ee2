// Any bytes given to the Skencil decoder: no crash, no hang, no leak, and what it reads writes back to the
// same colours (six significant digits).
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzCoderRoundTrip(data, size, PAL::makeSkencilCoder, roundtrip::SameColors{1e-5, false});
}
