// Any bytes given to the CorelDRAW XML palette reader: no crash, no hang, no leak; what it reads writes and reads
// back with as many colours.
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return fuzzCoderRoundTrip(data, size, PAL::makeCorelDrawCoder); }
