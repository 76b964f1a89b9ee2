// Our own binary palette (.dcp), laid out in docs/formats/dcp.md: everything a palette holds (its
// name, the global colours, the named groups; each colour's space, components, alpha, type and name)
// with numbers as 64-bit floats, so that a palette reads back exactly as it was written.
#include <array>

#include "exchange/coders/BinaryFile.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using BytesParser::BytesWriter;
using binaryfile::WholeFile;
using Case = CommonError::Case;

constexpr binaryfile::OwnFormat dcp{PaletteFormat::dcp, {"\x89" "DCP", 4}, 1};

// The stored codes, fixed by the file format whatever the enumerations' order becomes.
constexpr std::array<ColorSpace, 4> spaceCodes = {ColorSpace::CMYK, ColorSpace::RGB, ColorSpace::LAB, ColorSpace::Gray};
constexpr std::array<ColorType, 3> typeCodes = {ColorType::global, ColorType::spot, ColorType::normal};

// Space and type bytes, one component, alpha and an empty name.
constexpr size_t smallestColor = 2 + 8 + 8 + 4;
// An empty name and no colours.
constexpr size_t smallestGroup = 4 + 4;

template <typename T, size_t N>
uint8_t codeOf(const std::array<T, N>& codes, T value) {
    for (size_t i = 0; i < N; ++i)
        if (codes[i] == value) return static_cast<uint8_t>(i);
    throw CommonError(Case::invalidFormat);
}

Color readColor(WholeFile& file) {
    const auto spaceCode = file.read<uint8_t>();
    if (spaceCode >= spaceCodes.size()) throw CommonError(Case::unsupportedColorSpace);
    const auto typeCode = file.read<uint8_t>();
    if (typeCode >= typeCodes.size()) throw CommonError(Case::unknownColorType, int64_t{typeCode});
    const auto space = spaceCodes[spaceCode];

    std::vector<double> components(static_cast<size_t>(componentCount(space)));
    for (double& component : components) component = binaryfile::readNumber(file);
    const double alpha = binaryfile::readNumber(file);
    if (alpha < 0 || alpha > 1) throw CommonError(Case::invalidFormat);  // a palette never holds one
    return Color(space, std::move(components), alpha, binaryfile::readText(file), typeCodes[typeCode]);
}

std::vector<Color> readColors(WholeFile& file) {
    std::vector<Color> colors;
    const auto count = binaryfile::readCount(file, smallestColor);
    colors.reserve(count);
    for (uint32_t i = 0; i < count; ++i) colors.push_back(readColor(file));
    return colors;
}

void writeColors(BytesWriter& out, const std::vector<Color>& colors) {
    binaryfile::writeCount(out, colors.size());
    for (const auto& color : colors) {
        if (color.colorComponents.size() != static_cast<size_t>(componentCount(color.colorSpace)))
            throw CommonError(Case::invalidColorComponentCountForModelType);
        out.writeByte(codeOf(spaceCodes, color.colorSpace));
        out.writeByte(codeOf(typeCodes, color.colorType));
        for (double component : color.colorComponents) binaryfile::writeNumber(out, component);
        binaryfile::writeNumber(out, color.alpha);
        binaryfile::writeText(out, color.name);
    }
}

class DCPCoder final : public PaletteCoder {
public:
    DCPCoder() : PaletteCoder(PaletteFormat::dcp) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& source) const override {
        return binaryfile::readOwnFormat(source, dcp, [](WholeFile& file, Palette& palette) {
            palette.colors = readColors(file);
            const auto groupCount = binaryfile::readCount(file, smallestGroup);
            palette.groups.reserve(groupCount);
            for (uint32_t i = 0; i < groupCount; ++i) {
                auto name = binaryfile::readText(file);
                palette.groups.emplace_back(std::move(name), readColors(file));
            }
        });
    }

    std::string encode(const Palette& palette) const override {
        BytesWriter out = binaryfile::writeOpening(dcp, palette);
        writeColors(out, palette.colors);
        binaryfile::writeCount(out, palette.groups.size());
        for (const auto& group : palette.groups) {
            binaryfile::writeText(out, group.name);
            writeColors(out, group.colors);
        }
        return out.data();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeDCPCoder() { return std::make_unique<DCPCoder>(); }

}  // namespace PAL
