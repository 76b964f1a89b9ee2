// Hex lists (.hex): one colour per line as Aseprite and the pixel-art palette sites write them
// ("rrggbb", lower case, no '#'), or with '#' as GIMP exports them, or several on a line as colour
// generators copy them ("#ef476f, #ffd166"). Eight digits are RRGGBBAA, the order this format is named
// for; 3 and 4 digits are the short forms. A word after a line's single colour is kept as its name.
#include <algorithm>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/PalUnit.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

bool isSeparator(char c) { return textfile::isBlank(c) || c == ',' || c == ';'; }

std::vector<std::string_view> tokens(std::string_view line) {
    std::vector<std::string_view> out;
    std::size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && isSeparator(line[i])) ++i;
        const std::size_t start = i;
        while (i < line.size() && !isSeparator(line[i])) ++i;
        if (i > start) out.push_back(line.substr(start, i - start));
    }
    return out;
}

bool isHexColor(std::string_view token) { return textfile::hexColorDigits(token).has_value(); }

Color hexColor(std::string_view token, std::string name = {}) {
    return Color::hex(token, ColorByteFormat::rgba, std::move(name));
}

// The colours of one line; none for a comment. Throws invalidFormat for a line that is neither.
void readLine(std::string_view line, std::vector<Color>& colors) {
    const auto words = tokens(line);
    if (words.empty() || line.starts_with("//") || line.starts_with(';')) return;
    if (!isHexColor(words.front())) {
        if (line.starts_with('#') || line.starts_with('!')) return;  // "# Palette name" and the like
        throw CommonError(CommonError::Case::invalidFormat);
    }
    if (std::all_of(words.begin(), words.end(), isHexColor)) {
        for (const auto word : words) colors.push_back(hexColor(word));
        return;
    }
    std::string_view rest = line.substr(static_cast<std::size_t>(words.front().data() - line.data()) + words.front().size());
    while (!rest.empty() && isSeparator(rest.front())) rest.remove_prefix(1);
    colors.push_back(hexColor(words.front(), std::string(textfile::trimmed(rest))));
}

class HexRGBACoder final : public PaletteCoder {
public:
    HexRGBACoder() : PaletteCoder(PaletteFormat::hexRGBA) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string text = textfile::readText(reader);
        Palette palette;
        palette.format = PaletteFormat::hexRGBA;
        for (const auto line : textfile::splitLines(text)) readLine(textfile::trimmed(line), palette.colors);
        if (palette.colors.empty()) throw CommonError(CommonError::Case::invalidFormat);
        return palette;
    }

    // Opaque colours as six digits, which every reader of the format takes; others with their alpha.
    std::string encode(const Palette& palette) const override {
        std::string out;
        for (const auto& color : palette.eachColor()) {
            out += color.hexString(byteOf(color.alpha) < 255 ? ColorByteFormat::rgba : ColorByteFormat::rgb);
            out += '\n';
        }
        return out;
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeHexRGBACoder() { return std::make_unique<HexRGBACoder>(); }

}  // namespace PAL
