// Photoshop colour books (.acb): a titled list of named colours in one colour space, big endian,
// strings as counted UTF-16. Read only: books come from ink makers, not from us.
#include <algorithm>
#include <optional>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using BytesParser::BytesReader;
constexpr auto big = BytesParser::Endianness::big;

// Book strings may be localisation references, "$$$/colorbook/ANPA/title=ANPA Color": the text
// after the last "=" is what people see.
std::string displayText(const std::string& text) {
    if (!text.starts_with("$$$")) return text;
    return text.substr(text.rfind('=') == std::string::npos ? 0 : text.rfind('=') + 1);
}

bool isBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
}

// The space a book's space word names; nothing for one that books do not use.
std::optional<ColorSpace> bookSpace(uint16_t word) {
    switch (word) {
        case 0: return ColorSpace::RGB;
        case 2: return ColorSpace::CMYK;
        case 7: return ColorSpace::LAB;
        case 8: return ColorSpace::Gray;
        default: return std::nullopt;
    }
}

size_t bytesPerColor(ColorSpace space) { return space == ColorSpace::CMYK ? 4 : space == ColorSpace::Gray ? 1 : 3; }

Color bookColor(ColorSpace space, const std::vector<uint8_t>& x, std::string name) {
    if (x.size() != static_cast<size_t>(componentCount(space)))
        throw CommonError(CommonError::Case::invalidColorComponentCountForModelType);
    const auto unit = [](double v) { return std::clamp(v / 255, 0.0, 1.0); };
    std::vector<double> components;
    switch (space) {
        case ColorSpace::RGB:
        case ColorSpace::Gray:
            for (uint8_t byte : x) components.push_back(unit(byte));
            break;
        case ColorSpace::CMYK:  // stored as remaining paper: 255 is no ink
            for (uint8_t byte : x) components.push_back(unit(255 - byte));
            break;
        case ColorSpace::LAB: components = {x[0] / 2.55, x[1] - 128.0, x[2] - 128.0}; break;
    }
    return Color(space, std::move(components), 1.0, std::move(name));
}

class ACBCoder final : public PaletteCoder {
public:
    ACBCoder() : PaletteCoder(PaletteFormat::acb) {}
    using PaletteCoder::decode;

    Palette decode(BytesReader& reader) const override {
        if (reader.readBytes(4) != std::vector<uint8_t>{'8', 'B', 'C', 'B'}) {
            logError("PAL.Coder.ACB: Invalid palette file");
            throw CommonError(CommonError::Case::invalidBOM);
        }
        if (const auto version = reader.readInteger<uint16_t>(big); version != 1)
            logInfo(formatLogMessage("PAL.Coder.ACB: Found untested version %d... decoder may not work", {std::to_string(version)}));

        reader.readInteger<uint16_t>(big);  // book identifier
        Palette palette(displayText(reader.readPascalUTF16String()));
        palette.format = PaletteFormat::acb;
        for (int i = 0; i < 3; ++i) reader.readPascalUTF16String();  // prefix, postfix, description

        const auto count = reader.readInteger<uint16_t>(big);
        logInfo(formatLogMessage("PAL.Coder.ACB: Expecting %d colors", {std::to_string(count)}));
        reader.readInteger<uint16_t>(big);  // page size
        reader.readInteger<uint16_t>(big);  // page offset
        const auto spaceWord = reader.readInteger<uint16_t>(big);
        const auto space = bookSpace(spaceWord);
        if (!space) {
            logError(formatLogMessage("PAL.Coder.ACB: Colorspace %d not supported", {std::to_string(spaceWord)}));
            throw CommonError(CommonError::Case::unsupportedColorSpace);
        }

        for (size_t i = 0; i < count; ++i) {
            auto name = displayText(reader.readPascalUTF16String());
            std::string code;
            BytesParser::decodeText(reader.readBytes(6), BytesParser::TextEncoding::isoLatin1, code);
            const auto components = reader.readBytes(static_cast<int64_t>(bytesPerColor(*space)));
            // Fillers keep the book's pages aligned in Photoshop; they are not colours.
            if (isBlank(name) && isBlank(code)) continue;
            palette.colors.push_back(bookColor(*space, components, std::move(name)));
        }
        // "spflspot" or "spflproc"; books older than Photoshop CS2 end without it.
        if (reader.hasMoreData()) {
            try {
                reader.readBytes(8);
            } catch (const BytesParser::ReaderError&) {
            }
        }
        return palette;
    }

    std::string encode(const Palette&) const override {
        logError("PAL.Coder.ACB: encode() not implemented");
        throw CommonError(CommonError::Case::notImplemented);
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeACBCoder() { return std::make_unique<ACBCoder>(); }

}  // namespace PAL
