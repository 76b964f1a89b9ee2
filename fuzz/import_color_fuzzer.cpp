// Any text given to colour text recognition with every recogniser on: no crash, no hang, every colour
// found has its components and alpha within 0…1, and wherever the backtracking matcher that the linear
// scan replaced reads the text to the end, both find the same colours in the same order.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "formats/color/ColorConversions.h"
#include "formats/color/ImportColor.h"
#include "tests/formats/color/BacktrackingImportColor.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto patterns = kro::allImportColorPatterns();
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto colors = kro::ImportColor::colors(text, patterns);
    for (const auto& color : colors) {
        for (double component : {color.red(), color.green(), color.blue(), color.alpha()}) {
            if (!(component >= 0 && component <= 1)) std::abort();
        }
    }
    const auto reference = kro::backtracking::colors(text, patterns);
    if (!reference.finished) return 0;
    if (reference.colors.size() != colors.size()) std::abort();
    for (size_t i = 0; i < colors.size(); ++i) {
        if (kro::hexText(colors[i]) != kro::hexText(reference.colors[i]) ||
            colors[i].alpha() != reference.colors[i].alpha()) {
            std::abort();
        }
    }
    return 0;
}
