// Colour-list JSON, hex text and ICC profiles from arbitrary bytes: the first byte picks the parser.
#include <cstdint>
#include <string_view>
#include "formats/color/ColorConversions.h"
#include "formats/color/ColorList.h"
#include "formats/color/ColorName.h"
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    switch (data[0] % 3) {
        case 0: {
            auto list = kro::ColorList::fromJson(text);
            kro::ColorName::name(list, 0.5, 0.2, 0.9);
            kro::ColorName::name(list, 1.5, -0.2, 0.0);
            break;
        }
        case 1: {
            auto c = kro::colorFromHex(text);
            kro::hexText(c);
            kro::scanHexNumber(text);
            kro::ColorName::distance(text, "FF0080");
            kro::ColorName::name(kro::ColorList({{std::string(text), "x"}, {"00", "y"}}), 0.1, 0.2, 0.3);
            break;
        }
        default: {
            auto space = kro::ColorSpace::fromICCProfile(text, "fuzz");
            if (space) {
                auto v = kro::ColorValue::withComponents(space, {0.2, 0.5, 0.7, 0.1});
                v.red(); v.cyan();
                kro::ColorValue::rgb(0.3, 0.6, 0.9).converted(space);
            }
        }
    }
    return 0;
}
