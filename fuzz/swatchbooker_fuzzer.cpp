// SwatchBooker reader on arbitrary bytes, taken both as the whole file and as the swatchbook.xml inside
// an archive (random bytes seldom make an archive): no crash, hang or leak, and what it reads survives
// its own writer.
#include "exchange/Zip.h"
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzzCoderRoundTrip(data, size, PAL::makeSwatchBookerCoder);
    const std::string archive = PAL::zip::write({{"swatchbook.xml", std::string_view(reinterpret_cast<const char*>(data), size)}});
    return fuzzCoderRoundTrip(reinterpret_cast<const uint8_t*>(archive.data()), archive.size(), PAL::makeSwatchBookerCoder);
}
