// Any bytes given to the CorelDrawV3 decoder: no crash, no hang, no leak, and what it reads writes back to the
// same colours (whole percentages).
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzCoderRoundTrip(data, size, PAL::makeCorelDrawV3Coder, roundtrip::SameColors{0.005 + 1e-9, false});
}
