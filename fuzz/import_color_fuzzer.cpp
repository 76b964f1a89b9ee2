// Any text given to colour text recognition with every recogniser on: no crash, no hang, and every
// colour found has its components and alpha within 0…1.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "formats/color/ImportColor.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto patterns = kro::allImportColorPatterns();
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const auto& color : kro::ImportColor::colors(text, patterns)) {
        for (double component : {color.red(), color.green(), color.blue(), color.alpha()}) {
            if (!(component >= 0 && component <= 1)) std::abort();
        }
    }
    return 0;
}
