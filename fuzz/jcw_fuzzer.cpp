// Any bytes given to the jcw decoder: no crash, no hang, no leak, and what it reads writes back.
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzCoderRoundTrip(data, size, PAL::makeXaraCoder);
}
