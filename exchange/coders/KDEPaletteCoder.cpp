// KDE palettes (.colors): "KDE RGB Palette", or KolourPaint's "KDE RGBA Palette" with a fourth value.
// Reading is KDE's own: any first line holding " Palette" is accepted (so a GIMP palette opens too),
// '#' lines form the description, and lines that do not start with the numbers are passed over. The
// description's first line is the palette's name, which is where our writer puts it; a Plasma colour
// scheme, which shares the extension, has no such first line and is refused.
#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/PalUnit.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

constexpr std::string_view rgbHeader = "KDE RGB Palette";
constexpr std::string_view rgbaHeader = "KDE RGBA Palette";

// Three (or four) integers, then the name; nullopt when the line does not start that way. Under the
// RGBA header a line with three numbers is an opaque colour, which KolourPaint would lose.
std::optional<Color> colorLine(std::string_view line, bool withAlpha) {
    long long values[4] = {0, 0, 0, 255};
    for (int i = 0; i < 3; ++i) {
        const auto value = textfile::integer(textfile::nextWord(line));
        if (!value) return std::nullopt;
        values[i] = *value;
    }
    if (withAlpha) {
        std::string_view rest = line;
        if (const auto alpha = textfile::integer(textfile::nextWord(rest))) {
            values[3] = *alpha;
            line = rest;
        }
    }
    return Color::rgb255(static_cast<double>(values[0]), static_cast<double>(values[1]), static_cast<double>(values[2]),
                         static_cast<double>(values[3]), std::string(textfile::trimmed(line)));
}

class KDEPaletteCoder final : public PaletteCoder {
public:
    KDEPaletteCoder() : PaletteCoder(PaletteFormat::koffice) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string text = textfile::readText(reader);
        const auto lines = textfile::splitLines(text);
        if (lines.empty() || lines.front().find(" Palette") == std::string_view::npos)
            throw CommonError(CommonError::Case::invalidFormat);
        const bool withAlpha = textfile::trimmed(lines.front()) == rgbaHeader;

        Palette palette;
        palette.format = PaletteFormat::koffice;
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const std::string_view line = lines[i];
            if (line.starts_with('#')) {
                if (palette.name.empty()) palette.name = std::string(textfile::trimmed(line.substr(1)));
            } else if (auto color = colorLine(line, withAlpha)) {
                palette.colors.push_back(std::move(*color));
            }
        }
        if (palette.colors.empty()) throw CommonError(CommonError::Case::invalidFormat);
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        bool withAlpha = false;
        for (const auto& color : colors) withAlpha = withAlpha || byteOf(color.alpha) < 255;

        std::string out = std::string(withAlpha ? rgbaHeader : rgbHeader) + "\n#" + textfile::singleLine(palette.name) + "\n";
        for (const auto& color : colors) {
            const RGB rgb = color.rgb();
            out += std::to_string(byteOf(rgb.rf)) + ' ' + std::to_string(byteOf(rgb.gf)) + ' ' + std::to_string(byteOf(rgb.bf));
            if (withAlpha) out += ' ' + std::to_string(byteOf(color.alpha));
            const std::string name = textfile::singleLine(textfile::trimmed(color.name));
            if (!name.empty()) out += ' ' + name;
            out += '\n';
        }
        return out;
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeKDEPaletteCoder() { return std::make_unique<KDEPaletteCoder>(); }

}  // namespace PAL
