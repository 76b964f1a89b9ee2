// Any bytes given to the dcp decoder: no crash, no hang, no leak. The format has one way to write
// each palette, so a file that reads must write back byte for byte.
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzCoderRoundTrip(data, size, PAL::makeDCPCoder, roundtrip::SameBytes{});
}
