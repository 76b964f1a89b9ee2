// SVG gradients on arbitrary bytes: read or refused, never a crash or hang; what is read writes and reads back.
#include "GradientRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return fuzzGradientRoundTrip(data, size, PAL::GradientsFormat::svg);
}
