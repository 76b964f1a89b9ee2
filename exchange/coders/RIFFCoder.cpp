// Microsoft RIFF palettes (.pal): a "PAL " form whose "data" chunk holds a Windows logical
// palette, little endian: version, count, then r, g, b, flags per entry.
#include <algorithm>
#include <cmath>

#include "exchange/BytesReader.h"
#include "exchange/BytesWriter.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using BytesParser::BytesReader;
using BytesParser::TextEncoding;
constexpr auto little = BytesParser::Endianness::little;

bool readTag(BytesReader& reader, std::string_view tag) {
    const auto bytes = reader.readBytes(4);
    return std::equal(bytes.begin(), bytes.end(), tag.begin(), tag.end());
}

uint8_t channelByte(double unit) { return static_cast<uint8_t>(std::lround(std::clamp(unit, 0.0, 1.0) * 255)); }

class RIFFCoder final : public PaletteCoder {
public:
    RIFFCoder() : PaletteCoder(PaletteFormat::riff) {}
    using PaletteCoder::decode;

    Palette decode(BytesReader& reader) const override {
        const bool isRIFF = readTag(reader, "RIFF");
        reader.readInteger<uint32_t>(little);  // form size
        if (!isRIFF || !readTag(reader, "PAL ")) throw CommonError(CommonError::Case::invalidFormat);
        if (!readTag(reader, "data")) throw CommonError(CommonError::Case::invalidFormat);
        reader.readInteger<uint32_t>(little);  // chunk size
        reader.readInteger<uint16_t>(little);  // palette version
        const auto count = reader.readInteger<int16_t>(little);
        if (count < 0) throw CommonError(CommonError::Case::invalidIntegerValue);

        const auto entries = reader.readBytes(int64_t{count} * 4);
        Palette palette;
        palette.format = PaletteFormat::riff;
        palette.colors.reserve(static_cast<size_t>(count));
        for (size_t i = 0; i < entries.size(); i += 4)  // the flags byte is not a colour
            palette.colors.push_back(Color::rgb255(entries[i], entries[i + 1], entries[i + 2]));
        return palette;
    }

    // The simple form only (one "data" chunk, version 0x0300, flags 0): the form every reader takes.
    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        if (colors.size() > INT16_MAX) throw CommonError(CommonError::Case::indexOutOfRange);  // the count is read signed
        const auto dataSize = static_cast<uint32_t>(4 + 4 * colors.size());

        BytesParser::BytesWriter out;
        out.writeString("RIFF", TextEncoding::ascii);
        out.writeInteger<uint32_t>(12 + dataSize, little);
        out.writeString("PAL data", TextEncoding::ascii);
        out.writeInteger<uint32_t>(dataSize, little);
        out.writeInteger<uint16_t>(0x0300, little);
        out.writeInteger<uint16_t>(static_cast<uint16_t>(colors.size()), little);
        for (const auto& color : colors) {
            const auto rgb = color.rgb();
            const uint8_t entry[4] = {channelByte(rgb.rf), channelByte(rgb.gf), channelByte(rgb.bf), 0};
            out.writeBytes(entry);
        }
        return out.data();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeRIFFCoder() { return std::make_unique<RIFFCoder>(); }

}  // namespace PAL
