// Photoshop colour tables (.act): 256 RGB triples, optionally followed by the number of colours in
// use and a transparent index. No magic, no names, no groups.
#include <algorithm>
#include <cmath>
#include <optional>

#include "exchange/BytesReader.h"
#include "exchange/BytesWriter.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using BytesParser::BytesReader;
constexpr auto big = BytesParser::Endianness::big;
constexpr size_t tableSize = 256;

// The trailer is optional, so a missing value is no error.
std::optional<int16_t> guardedSignedWord(BytesReader& reader) {
    try {
        return reader.readInteger<int16_t>(big);
    } catch (const BytesParser::ReaderError&) {
        return std::nullopt;
    }
}

uint8_t channelByte(double unit) { return static_cast<uint8_t>(std::lround(std::clamp(unit, 0.0, 1.0) * 255)); }

class ACTCoder final : public PaletteCoder {
public:
    ACTCoder() : PaletteCoder(PaletteFormat::act) {}
    using PaletteCoder::decode;

    Palette decode(BytesReader& reader) const override {
        const auto table = reader.readBytes(tableSize * 3);
        Palette palette;
        palette.format = PaletteFormat::act;
        for (size_t i = 0; i < tableSize; ++i)
            palette.colors.push_back(Color::rgb255(table[3 * i], table[3 * i + 1], table[3 * i + 2]));

        if (const auto used = guardedSignedWord(reader)) {
            // A negative count is not a count: the table is kept whole.
            if (*used >= 0 && static_cast<size_t>(*used) < palette.colors.size()) palette.colors.erase(palette.colors.begin() + *used, palette.colors.end());
            const auto transparent = guardedSignedWord(reader);
            if (transparent && *transparent >= 0 && static_cast<size_t>(*transparent) < palette.colors.size())
                palette.colors[static_cast<size_t>(*transparent)].alpha = 0;
        }
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        std::string table(tableSize * 3, '\0');
        for (size_t i = 0; i < std::min(colors.size(), tableSize); ++i) {
            const auto rgb = colors[i].rgb();
            table[3 * i] = static_cast<char>(channelByte(rgb.rf));
            table[3 * i + 1] = static_cast<char>(channelByte(rgb.gf));
            table[3 * i + 2] = static_cast<char>(channelByte(rgb.bf));
        }
        BytesParser::BytesWriter out;
        out.writeBytes(table);
        if (colors.size() < tableSize) {
            out.writeInteger<uint16_t>(static_cast<uint16_t>(colors.size()), big);
            out.writeInteger<uint16_t>(0xFFFF, big);  // no transparent colour
        }
        return out.data();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeACTCoder() { return std::make_unique<ACTCoder>(); }

}  // namespace PAL
