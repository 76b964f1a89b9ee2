// JSON palette reader on arbitrary bytes: it either reads a palette or refuses with an error, and what it
// reads survives its own writer.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "exchange/coders/JSONCoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const PAL::JSONCoder coder;
    PAL::Palette palette;
    try {
        palette = coder.decode(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const std::exception&) {
        return 0;
    }
    std::string written;
    try {
        written = coder.encode(palette);
    } catch (const std::exception&) {
        std::abort();  // whatever was read must be writable
    }
    const PAL::Palette again = coder.decode(std::string_view(written));
    if (again.totalColorCount() != palette.totalColorCount() || again.groups.size() != palette.groups.size()) std::abort();
    return 0;
}
