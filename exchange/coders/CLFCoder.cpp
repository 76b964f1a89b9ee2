// CLF Lab colour lists (.clf), our own layout (docs/formats/clf.md): a named list of Lab colours,
// each with its name and alpha, numbers as 64-bit floats. Colours of other spaces are converted to
// Lab on the way out; groups are flattened. A Common LUT Format file (XML colour transforms, the
// same extension) is refused by the magic.
#include <array>

#include "exchange/coders/BinaryFile.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using BytesParser::BytesWriter;
using binaryfile::WholeFile;
using Case = CommonError::Case;

constexpr binaryfile::OwnFormat clf{PaletteFormat::clf, {"\x89" "CLF", 4}, 1};
// An empty name, L, a, b and alpha.
constexpr size_t smallestColor = 4 + 4 * 8;

// Lab colours keep their own numbers; others go through the shared converter.
std::array<double, 3> labOf(const Color& color) {
    if (color.colorSpace == ColorSpace::LAB && color.colorComponents.size() == 3)
        return {color.colorComponents[0], color.colorComponents[1], color.colorComponents[2]};
    const auto lab = color.lab();
    return {lab.lf, lab.af, lab.bf};
}

class CLFCoder final : public PaletteCoder {
public:
    CLFCoder() : PaletteCoder(PaletteFormat::clf) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& source) const override {
        return binaryfile::readOwnFormat(source, clf, [](WholeFile& file, Palette& palette) {
            const auto count = binaryfile::readCount(file, smallestColor);
            palette.colors.reserve(count);
            for (uint32_t i = 0; i < count; ++i) {
                auto name = binaryfile::readText(file);
                double values[4];
                for (double& value : values) value = binaryfile::readNumber(file);
                if (values[3] < 0 || values[3] > 1) throw CommonError(Case::invalidFormat);
                palette.colors.push_back(Color::lab(values[0], values[1], values[2], values[3], std::move(name)));
            }
        });
    }

    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        BytesWriter out = binaryfile::writeOpening(clf, palette);
        binaryfile::writeCount(out, colors.size());
        for (const auto& color : colors) {
            binaryfile::writeText(out, color.name);
            for (double value : labOf(color)) binaryfile::writeNumber(out, value);
            binaryfile::writeNumber(out, color.alpha);
        }
        return out.data();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeCLFCoder() { return std::make_unique<CLFCoder>(); }

}  // namespace PAL
