// Any bytes given to the CorelPainter decoder: no crash, no hang, no leak, and what it reads writes back to the
// same colours (bytes).
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzCoderRoundTrip(data, size, PAL::makeCorelPainterCoder, roundtrip::SameColors{1e-9, false});
}
