// Any bytes given to the RGBA text reader: no crash, no hang, no leak, and what it reads writes back stably.
#include "fuzz/StableRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return fuzzStableRoundTrip(data, size, PAL::makeRGBATextCoder); }
