// Any bytes given to the image decoder: no crash, no hang, no allocation past the picture's own size,
// and what it samples, drawn as a swatch sheet, samples back to exactly the same colours in order.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "exchange/PalErrors.h"
#include "exchange/coders/ImageCoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const PAL::ImageCoder coder = [] {
        PAL::ImageCoder small;
        // Fewer colours and smaller swatches keep each run quick; every path is still taken.
        small.maximumColorCount = 32;
        small.exportType = PAL::ImageCoder::ExportType::swatch({4, 4});
        return small;
    }();
    PAL::Palette palette;
    try {
        palette = coder.decode(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const PAL::CommonError&) {
        return 0;  // refused: fine, as long as it neither crashed nor hung
    }
    if (palette.colors.empty()) return 0;  // a picture with nothing but transparency has no sheet to draw
    const PAL::Palette again = coder.decode(coder.encode(palette));
    if (again.colors.size() != palette.colors.size()) std::abort();
    for (size_t i = 0; i < palette.colors.size(); ++i)
        if (again.colors[i].hexString(PAL::ColorByteFormat::rgba) != palette.colors[i].hexString(PAL::ColorByteFormat::rgba)) std::abort();
    return 0;
}
