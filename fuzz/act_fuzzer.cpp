// Any bytes given to the act decoder: no crash, no hang, no leak, and what it reads writes back.
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzCoderRoundTrip(data, size, PAL::makeACTCoder, roundtrip::SameCount{256});
}
