// Arbitrary bytes through the trial of every coder, as if the file had each coder's extensions: no coder
// may crash or hang, whatever it is given. The first byte picks the extension.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/PaletteCoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::vector<std::string> extensions = [] {
        std::vector<std::string> list;
        for (const auto& format : PAL::paletteFormats())
            for (const auto& extension : format.extensions)
                if (std::find(list.begin(), list.end(), extension) == list.end()) list.emplace_back(extension);
        return list;
    }();
    if (size == 0) return 0;
    const std::string& extension = extensions[data[0] % extensions.size()];
    try {
        const PAL::Palette palette = PAL::decode(std::string_view(reinterpret_cast<const char*>(data + 1), size - 1), extension);
        // Every colour read must be readable in RGB or fail with an error, never crash.
        for (const auto& color : palette.allColors()) {
            try {
                (void)color.hexString();
            } catch (const std::exception&) {
            }
        }
    } catch (const std::exception&) {
    }
    return 0;
}
