// Xara palettes (.jcw): little endian; a header whose type byte gives one colour model and the spot
// flag for the whole file, then fixed-width records of four 0...10000 components and a Latin-1
// name. No groups and no alpha; a palette of mixed spaces is written as RGB.
#include <algorithm>
#include <cmath>

#include "exchange/ExchangeLog.h"
#include "exchange/coders/BinaryFile.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using BytesParser::BytesWriter;
using BytesParser::TextEncoding;
using binaryfile::little;
using binaryfile::WholeFile;
using Case = CommonError::Case;

constexpr size_t headerSize = 8, componentBytes = 8;
constexpr double componentScale = 10000;

// The type byte: bit 0 spot, bits 1-2 the model, bit 3 set for plain names (clear for a PANTONE
// library, whose names leave out the "PANTONE " that readers put back).
constexpr uint8_t spotBit = 1, plainNamesBit = 8;
enum Model : uint8_t { cmykModel = 0, rgbModel = 1, hsvModel = 2 };
Model modelOf(uint8_t type) { return static_cast<Model>((type >> 1) & 3); }

// Names are written at least this wide, as the published Xara libraries are.
constexpr size_t minimumNameWidth = 21;

[[noreturn]] void invalidFile() {
    logError("JCWCoder: Invalid palette file");
    throw CommonError(Case::invalidFormat);
}

// The stored width is trusted only when the records then fill the file exactly; old files carry 0
// there with 16-byte names, so otherwise the width comes from the file size.
size_t recordSize(size_t fileSize, uint16_t count, uint8_t nameWidth) {
    const size_t body = fileSize - headerSize;
    if (count == 0) {
        if (body != 0) invalidFile();
        return componentBytes;
    }
    if (nameWidth != 0 && body == count * (componentBytes + nameWidth)) return componentBytes + nameWidth;
    if (body % count != 0 || body / count < componentBytes) invalidFile();
    return body / count;
}

std::string readName(const std::vector<uint8_t>& field) {
    const auto end = std::find(field.begin(), field.end(), 0);  // a name may fill the field without a terminator
    std::string name;
    BytesParser::decodeText({field.data(), static_cast<size_t>(end - field.begin())}, TextEncoding::isoLatin1, name);
    return name;
}

// A character that Latin-1 cannot hold becomes '?'.
std::string latin1(const std::string& name) {
    std::vector<uint8_t> units;
    if (!BytesParser::encodeText(name, TextEncoding::utf16LittleEndian, units)) throw CommonError(Case::invalidString);
    std::string out;
    for (size_t i = 0; i + 1 < units.size(); i += 2) {
        const char16_t unit = static_cast<char16_t>(units[i] | units[i + 1] << 8);
        if (unit >= 0xDC00 && unit <= 0xDFFF) continue;  // second half of a pair already replaced
        out += unit < 0x100 ? static_cast<char>(unit) : '?';
    }
    return out;
}

uint16_t component(double unit) { return static_cast<uint16_t>(std::lround(std::clamp(unit, 0.0, 1.0) * componentScale)); }

class XaraCoder final : public PaletteCoder {
public:
    XaraCoder() : PaletteCoder(PaletteFormat::xara) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& source) const override {
        return binaryfile::refusingShortReads([&] {
            WholeFile file(source);
            if (file.size() < headerSize) invalidFile();
            if (!binaryfile::holds(file.readBytes(3), 0, "JCW")) invalidFile();
            if (const auto version = file.read<uint8_t>(); version != 1)
                logError(formatLogMessage("JCW: Found untested version %d... decoder may not work", {std::to_string(version)}));
            const auto count = file.read<uint16_t>();
            const auto type = file.read<uint8_t>();
            const size_t size = recordSize(file.size(), count, file.read<uint8_t>());

            Palette palette;
            palette.format = PaletteFormat::xara;
            palette.colors.reserve(count);
            const auto colorType = type & spotBit ? ColorType::spot : ColorType::global;
            for (uint16_t index = 0; index < count; ++index) {
                double c[4];
                for (double& value : c) value = file.read<uint16_t>() / componentScale;
                std::string name = readName(file.readBytes(size - componentBytes));
                if (!(type & plainNamesBit) && !name.empty()) name = "PANTONE " + name;
                switch (modelOf(type)) {
                    case cmykModel: palette.colors.push_back(Color::cmyk(c[0], c[1], c[2], c[3], 1, name, colorType)); break;
                    case rgbModel: palette.colors.push_back(Color::rgb(c[0], c[1], c[2], 1, name, colorType)); break;
                    case hsvModel: palette.colors.push_back(Color::hsb(c[0], c[1], c[2], 1, name, colorType)); break;
                    default:
                        logError(formatLogMessage("JCWCoder: Unsupported color type %d at index %d",
                                                  {std::to_string(type), std::to_string(index)}));
                }
            }
            return palette;
        });
    }

    // CMYK when every colour is CMYK, else RGB; spot when every colour is spot.
    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        if (colors.size() > UINT16_MAX) throw CommonError(Case::indexOutOfRange);
        const auto every = [&](auto predicate) {
            return !colors.empty() && std::all_of(colors.begin(), colors.end(), predicate);
        };
        const bool cmyk = every([](const Color& c) { return c.colorSpace == ColorSpace::CMYK; });
        const bool spot = every([](const Color& c) { return c.colorType == ColorType::spot; });

        std::vector<std::string> names;
        size_t width = minimumNameWidth;
        for (const auto& color : colors) {
            names.push_back(latin1(color.name).substr(0, UINT8_MAX));
            width = std::max(width, names.back().size());
        }

        BytesWriter out;
        out.writeString("JCW", TextEncoding::ascii);
        out.writeByte(1);
        out.writeInteger<uint16_t>(static_cast<uint16_t>(colors.size()), little);
        out.writeByte(static_cast<uint8_t>(plainNamesBit | (cmyk ? cmykModel : rgbModel) << 1 | (spot ? spotBit : 0)));
        out.writeByte(static_cast<uint8_t>(width));
        for (size_t i = 0; i < colors.size(); ++i) {
            if (cmyk) {
                const auto v = colors[i].cmyk();
                const uint16_t components[4] = {component(v.cf), component(v.mf), component(v.yf), component(v.kf)};
                out.writeIntegers<uint16_t>(components, little);
            } else {
                const auto v = colors[i].rgb();
                const uint16_t components[4] = {component(v.rf), component(v.gf), component(v.bf), 0};
                out.writeIntegers<uint16_t>(components, little);
            }
            names[i].resize(width, '\0');
            out.writeBytes(names[i]);
        }
        return out.data();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeXaraCoder() { return std::make_unique<XaraCoder>(); }

}  // namespace PAL
