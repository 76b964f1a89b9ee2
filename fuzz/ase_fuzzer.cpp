// Any bytes given to the ase decoder: no crash, no hang, no leak.
#include "exchange/PalErrors.h"
#include "fuzz/CoderRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto coder = PAL::makeASECoder();
    const auto palette = fuzzDecode(*coder, std::string_view(reinterpret_cast<const char*>(data), size));
    if (!palette) return 0;
    // What was read must write (a group name longer than a colour name may be is the one thing a
    // reader accepts and a writer refuses), and what was written must read back with as many colours.
    std::string written;
    try {
        written = coder->encode(*palette);
    } catch (const PAL::CommonError& error) {
        if (error.errorCase() == PAL::CommonError::Case::invalidString) return 0;
        throw;
    }
    if (coder->decode(written).allColors().size() != palette->allColors().size()) __builtin_trap();
    return 0;
}
