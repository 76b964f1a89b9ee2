// CorelDRAW 3 palettes (.pal, text): one swatch per line, a quoted name and four CMYK percentages, in a
// Windows code page, CR LF, sometimes closed by a DOS end-of-file byte. There is no header, so the reader
// takes only text whose every line has that shape: a binary VGA palette that happens to start with a quote
// is left to the VGA coders. The writer copies the column layout of the palettes CorelDRAW 3 shipped.
#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/ChannelBytes.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

using textfile::trimmed;

// CorelDRAW's editor holds names to 29 characters; its own files pad the quoted name to that width.
constexpr std::size_t longestName = 29;
constexpr std::size_t nameColumnWidth = 29;
constexpr char endOfFile = '\x1A';

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

// UTF-8 when the bytes are valid UTF-8, else Windows-1252. Control characters other than tabs and line
// breaks mean binary data.
std::string textOf(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    for (char c : bytes)
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\r' && c != '\n') refuse();
    return textfile::isValidUTF8(bytes) ? std::string(bytes) : textfile::windows1252ToUTF8(bytes);
}

Color swatch(std::string_view line, bool& clamped) {
    const auto close = line.find('"', 1);
    if (!line.starts_with('"') || close == std::string_view::npos) refuse();
    const auto values = textfile::words(line.substr(close + 1));
    if (values.size() != 4) refuse();
    double percent[4];
    for (std::size_t i = 0; i < 4; ++i) {
        const auto value = textfile::number(values[i]);
        if (!value) refuse();
        percent[i] = heldWithin(*value, 100, clamped) / 100;
    }
    return Color::cmyk(percent[0], percent[1], percent[2], percent[3], 1, std::string(line.substr(1, close - 1)));
}

// At most 29 Windows-1252 characters, no quotes, on one line.
std::string storedName(std::string_view name) {
    std::string stored;
    for (char c : textfile::utf8ToWindows1252(textfile::singleLine(trimmed(name))))
        if (c != '"' && stored.size() < longestName) stored += c;
    return stored;
}

class CorelDrawV3Coder final : public PaletteCoder {
public:
    CorelDrawV3Coder() : PaletteCoder(PaletteFormat::corelDrawV3) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        std::string bytes = textfile::remainingBytes(reader);
        bytes.resize(std::min(bytes.size(), bytes.find(endOfFile)));  // DOS ends the file there
        const std::string text = textOf(bytes);

        Palette palette;
        palette.format = PaletteFormat::corelDrawV3;
        bool clamped = false;
        for (const auto line : textfile::splitLines(text))
            if (!trimmed(line).empty()) palette.colors.push_back(swatch(trimmed(line), clamped));
        if (palette.colors.empty()) refuse();
        if (clamped) logInfo("PAL.Coder.CorelDrawV3: Percentages outside 0...100 were held at the nearest end");
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        std::string out;
        out.reserve(colors.size() * 47);
        bool converted = false;
        for (const auto& color : colors) {
            // The layer's own conversion, so that a colour written here reads back as the layer showed it.
            converted = converted || color.colorSpace != ColorSpace::CMYK;
            const CMYK cmyk = color.cmyk();
            std::string quoted = '"' + storedName(color.name) + '"';
            quoted.resize(std::max(quoted.size(), nameColumnWidth), ' ');
            out += quoted;
            for (const double value : {cmyk.cf, cmyk.mf, cmyk.yf, cmyk.kf}) {
                const std::string percent = std::to_string(scaled(value, 100));
                out += std::string(4 - percent.size(), ' ') + percent;
            }
            out += "\r\n";
        }
        if (converted) logInfo("PAL.Coder.CorelDrawV3: Colors that were not CMYK were converted to CMYK; the values are approximations");
        return out;
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeCorelDrawV3Coder() { return std::make_unique<CorelDrawV3Coder>(); }

}  // namespace PAL
