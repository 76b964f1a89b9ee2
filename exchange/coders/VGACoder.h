#pragma once
// VGA palettes (.pal): no header, a run of r, g, b bytes. The 24-bit kind stores 0...255 per
// channel, the 18-bit kind 0...63 as VGA hardware took them. Only a length that divides by 3
// tells such a file apart, which is why these coders are tried last.
#include <algorithm>
#include <cmath>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/PaletteCoder.h"

namespace PAL {

class VGACoder final : public PaletteCoder {
public:
    VGACoder(PaletteFormat format, double channelMaximum) : PaletteCoder(format), channelMaximum(channelMaximum) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto bytes = reader.readAll();
        if (bytes.size() % 3 != 0) throw CommonError(CommonError::Case::invalidFormat);
        Palette palette;
        palette.format = format();
        palette.colors.reserve(bytes.size() / 3);
        for (size_t i = 0; i < bytes.size(); i += 3)
            palette.colors.push_back(Color::rgb(bytes[i] / channelMaximum, bytes[i + 1] / channelMaximum, bytes[i + 2] / channelMaximum));
        return palette;
    }

    // Names, alpha and groups have no place in the file.
    std::string encode(const Palette& palette) const override {
        std::string bytes;
        const auto channel = [this](double unit) {
            return static_cast<char>(std::lround(std::clamp(unit, 0.0, 1.0) * channelMaximum));
        };
        for (const auto& color : palette.eachColor()) {
            const auto rgb = color.rgb();
            bytes += {channel(rgb.rf), channel(rgb.gf), channel(rgb.bf)};
        }
        return bytes;
    }

private:
    double channelMaximum;
};

}  // namespace PAL
