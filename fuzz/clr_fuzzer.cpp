// Any bytes given to the clr decoder: no crash, no hang, no leak, and what it reads writes back in both
// encodings.
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzzCoderRoundTrip(data, size, [] { return PAL::makeCLRCoder(PAL::CLREncoding::keyedArchive); });
    return fuzzCoderRoundTrip(data, size, [] { return PAL::makeCLRCoder(PAL::CLREncoding::typedstream); });
}
