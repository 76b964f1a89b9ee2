// Procreate Swatches reader on arbitrary bytes, taken both as the whole file and as the Swatches.json
// inside an archive (random bytes seldom make an archive): no crash, hang or leak, and what it reads
// survives its own writer, up to Procreate's 30 slots.
#include "exchange/Zip.h"
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const roundtrip::SameCount procreateSlots{30};
    fuzzCoderRoundTrip(data, size, PAL::makeSwatchesCoder, procreateSlots);
    const std::string archive = PAL::zip::write({{"Swatches.json", std::string_view(reinterpret_cast<const char*>(data), size)}});
    return fuzzCoderRoundTrip(reinterpret_cast<const uint8_t*>(archive.data()), archive.size(), PAL::makeSwatchesCoder, procreateSlots);
}
