// Photoshop swatches (.aco): a version 1 section of bare colours, then a version 2 section that
// repeats them with names. Big endian. No groups and no alpha: a write flattens the palette.
#include <cmath>
#include <optional>

#include "exchange/BytesReader.h"
#include "exchange/BytesWriter.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using BytesParser::BytesReader;
using BytesParser::BytesWriter;
using BytesParser::TextEncoding;
constexpr auto big = BytesParser::Endianness::big;

enum SpaceWord : uint16_t { rgbSpace = 0, hsbSpace = 1, cmykSpace = 2, labSpace = 7, graySpace = 8 };

// A read whose failure only means "not there".
std::optional<uint16_t> guardedWord(BytesReader& reader) {
    try {
        return reader.readInteger<uint16_t>(big);
    } catch (const BytesParser::ReaderError&) {
        return std::nullopt;
    }
}

// Version 2 names count their units with the terminator that Photoshop stores; it is not kept.
std::string readName(BytesReader& reader) {
    const auto length = reader.readInteger<uint32_t>(big);
    auto bytes = reader.readBytes(int64_t{length} * 2);
    if (bytes.size() >= 2 && bytes[bytes.size() - 1] == 0 && bytes[bytes.size() - 2] == 0) bytes.resize(bytes.size() - 2);
    std::string name;
    // A name that does not decode costs the name, not the colour.
    if (!BytesParser::decodeText(bytes, TextEncoding::utf16BigEndian, name)) name.clear();
    return name;
}

Color colorFromRecord(uint16_t space, const std::vector<uint16_t>& c, size_t index) {
    switch (space) {
        case rgbSpace: return Color::rgb(c[0] / 65535.0, c[1] / 65535.0, c[2] / 65535.0);
        case hsbSpace:
            logError(formatLogMessage("ACOPaletteCoder: Unsupported color space HSB for color at index %d, converting to RGB...",
                                      {std::to_string(index)}));
            return Color::hsb(std::min(c[0] / 65535.0, 1.0), std::min(c[1] / 65535.0, 1.0), std::min(c[2] / 65535.0, 1.0));
        case cmykSpace:  // stored inverted: 0 is full ink
            return Color::cmyk((c[0] ^ 0xFFFF) / 65535.0, (c[1] ^ 0xFFFF) / 65535.0, (c[2] ^ 0xFFFF) / 65535.0,
                               (c[3] ^ 0xFFFF) / 65535.0);
        case labSpace:  // a and b are read unsigned, so negative values come out large and positive
            return Color::lab(c[0] / 100.0, c[1] / 100.0, c[2] / 100.0);
        case graySpace: return Color::gray(c[0] / 10000.0);
        default:
            logError(formatLogMessage("ACOPaletteCoder: Unknown color space for color at index %d, inserting placeholder...",
                                      {std::to_string(index)}));
            return Color::rgb(1, 0, 0, 0.5, "Unsupported Colorspace");
    }
}

std::vector<Color> readRecords(BytesReader& reader, uint16_t version, uint16_t count) {
    if (version != 1 && version != 2) {
        logError("ACOPaletteCoder: Unexpected version $d");
        throw CommonError(CommonError::Case::invalidVersion);
    }
    std::vector<Color> colors;
    colors.reserve(count);
    for (size_t index = 0; index < count; ++index) {
        const auto space = reader.readInteger<uint16_t>(big);
        const auto components = reader.readIntegers<uint16_t>(4, big);
        Color color = colorFromRecord(space, components, index);
        if (version == 2) {
            auto name = readName(reader);
            if (color.name.empty()) color.name = std::move(name);  // the placeholder keeps its own
        }
        colors.push_back(std::move(color));
    }
    return colors;
}

uint16_t scaled(double value, double scale) {
    const double product = value * scale;
    if (!(product >= 0 && product <= 65535)) throw CommonError(CommonError::Case::invalidIntegerValue);
    return static_cast<uint16_t>(product);
}

// Space word and four component words. Gray goes out under the CMYK word, so it reads back as CMYK.
std::pair<uint16_t, std::array<uint16_t, 4>> record(const Color& color) {
    switch (color.colorSpace) {
        case ColorSpace::CMYK: {
            const auto cmyk = color.cmyk();
            return {cmykSpace,
                    {static_cast<uint16_t>(~scaled(cmyk.cf, 65535)), static_cast<uint16_t>(~scaled(cmyk.mf, 65535)),
                     static_cast<uint16_t>(~scaled(cmyk.yf, 65535)), static_cast<uint16_t>(~scaled(cmyk.kf, 65535))}};
        }
        case ColorSpace::Gray: return {cmykSpace, {scaled(color.gray(), 10000), 0, 0, 0}};
        case ColorSpace::LAB:  // LAB does not survive: it goes out as RGB
        case ColorSpace::RGB: {
            const auto rgb = color.converted(ColorSpace::RGB).rgb();
            return {rgbSpace, {scaled(rgb.rf, 65535), scaled(rgb.gf, 65535), scaled(rgb.bf, 65535), 0}};
        }
    }
    throw CommonError(CommonError::Case::unsupportedColorSpace);
}

class ACOCoder final : public PaletteCoder {
public:
    ACOCoder() : PaletteCoder(PaletteFormat::aco) {}
    using PaletteCoder::decode;

    // A file that starts with a version 2 section has its count read as the second version word,
    // so it reads as empty unless that count happens to be 2. Photoshop always writes version 1 first.
    Palette decode(BytesReader& reader) const override {
        std::vector<Color> version1, version2;
        if (guardedWord(reader) == 1) version1 = readRecords(reader, 1, reader.readInteger<uint16_t>(big));
        if (guardedWord(reader) == 2) version2 = readRecords(reader, 2, reader.readInteger<uint16_t>(big));
        Palette palette({}, version2.empty() ? std::move(version1) : std::move(version2));
        palette.format = PaletteFormat::aco;
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        if (colors.size() > 0xFFFF) throw CommonError(CommonError::Case::indexOutOfRange);
        std::vector<std::pair<uint16_t, std::array<uint16_t, 4>>> records;
        for (const auto& color : colors) records.push_back(record(color));

        BytesWriter out;
        for (uint16_t version : {1, 2}) {
            out.writeInteger<uint16_t>(version, big);
            out.writeInteger<uint16_t>(static_cast<uint16_t>(colors.size()), big);
            size_t i = 0;
            for (const auto& color : colors) {
                out.writeInteger<uint16_t>(records[i].first, big);
                out.writeIntegers<uint16_t>(records[i].second, big);
                if (version == 2) {
                    // Counted with the terminator, as Photoshop writes it.
                    std::vector<uint8_t> units;
                    if (!BytesParser::encodeText(color.name, TextEncoding::utf16BigEndian, units))
                        throw CommonError(CommonError::Case::invalidString);
                    out.writeInteger<uint32_t>(static_cast<uint32_t>(units.size() / 2 + 1), big);
                    out.writeBytes(units);
                    out.writeInteger<uint16_t>(0, big);
                }
                ++i;
            }
        }
        return out.data();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeACOCoder() { return std::make_unique<ACOCoder>(); }

}  // namespace PAL
