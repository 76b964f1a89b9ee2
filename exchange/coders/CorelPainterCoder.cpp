// Corel Painter colour sets in their text form (.txt): layout keywords ("ROWS 16", "COLS 16", ...), then
// one "R: 051, G:051, B:051 HV:0.00, SV:0.00, VV:0.00 name" line per swatch. The reader is lenient about
// spacing, letter case, the order of the keywords and the HSV fields; the writer copies the shape of the
// files Painter ships, quirks included (zero-padded values, no space after "G:" and "B:", a space
// before the name even when there is none).
#include <cctype>
#include <cstdio>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/ChannelBytes.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

using textfile::isBlank;
using textfile::trimmed;

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

// Walks one swatch line: labels are matched without regard to case, blanks around them are skipped.
class SwatchLine {
public:
    explicit SwatchLine(std::string_view line) : rest(line) {}

    bool label(std::string_view text) {
        skipBlanks();
        if (!textfile::startsWithIgnoringCase(rest, text)) return false;
        rest.remove_prefix(text.size());
        return true;
    }
    bool comma() { return label(","); }

    // The run of characters a number may hold, read as a whole number or a decimal.
    std::optional<long long> integer() { return textfile::integer(numberToken()); }
    std::optional<double> number() { return textfile::number(numberToken()); }

    std::string_view remainder() const { return trimmed(rest); }

private:
    void skipBlanks() {
        while (!rest.empty() && isBlank(rest.front())) rest.remove_prefix(1);
    }
    std::string_view numberToken() {
        skipBlanks();
        std::size_t length = 0;
        while (length < rest.size() && (std::isdigit(static_cast<unsigned char>(rest[length])) || rest[length] == '.' ||
                                        rest[length] == '-' || rest[length] == '+'))
            ++length;
        const auto token = rest.substr(0, length);
        rest.remove_prefix(length);
        return token;
    }

    std::string_view rest;
};

// The keyword of a layout line, "KEYWORD value" such as "ROWS 16"; nothing for any other line.
std::optional<std::string_view> layoutKeyword(std::string_view line) {
    const auto words = textfile::words(line);
    if (words.size() != 2 || !textfile::integer(words[1])) return std::nullopt;
    for (char c : words[0])
        if (!std::isalpha(static_cast<unsigned char>(c))) return std::nullopt;
    return words[0];
}

// Painter's files carry the HSV fields but leave them at 0, so the RGB values are the colour.
Color swatch(std::string_view line, bool& clamped) {
    SwatchLine swatch(line);
    int rgb[3] = {0, 0, 0};
    const std::string_view labels[3] = {"R:", "G:", "B:"};
    for (int c = 0; c < 3; ++c) {
        if ((c > 0 && !swatch.comma()) || !swatch.label(labels[c])) refuse();
        const auto value = swatch.integer();
        if (!value) refuse();
        rgb[c] = heldByte(*value, clamped);
    }
    if (swatch.label("HV:")) {
        const std::string_view others[2] = {"SV:", "VV:"};
        if (!swatch.number()) refuse();
        for (const auto& other : others)
            if (!swatch.comma() || !swatch.label(other) || !swatch.number()) refuse();
    }
    return Color::rgb255(rgb[0], rgb[1], rgb[2], 255, std::string(swatch.remainder()));
}

class CorelPainterCoder final : public PaletteCoder {
public:
    CorelPainterCoder() : PaletteCoder(PaletteFormat::corelPainter) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string text = textfile::fromBytes(textfile::remainingBytes(reader));
        const auto lines = textfile::splitLines(text);
        const auto first = lines.empty() ? std::nullopt : layoutKeyword(lines[0]);
        if (!first || first->size() != 4 || !textfile::startsWithIgnoringCase(*first, "ROWS")) refuse();

        Palette palette;
        palette.format = PaletteFormat::corelPainter;
        bool inLayout = true, clamped = false;
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const auto line = trimmed(lines[i]);
            if (line.empty()) continue;
            // The layout only says how Painter draws the set: the palette keeps nothing of it.
            if (inLayout && layoutKeyword(line)) continue;
            inLayout = false;
            palette.colors.push_back(swatch(line, clamped));
        }
        if (clamped) logInfo("PAL.Coder.CorelPainter: Values outside 0...255 were held at the nearest end");
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        const std::size_t columns = std::clamp<std::size_t>(colors.size(), 1, 16);
        std::string out = "ROWS " + std::to_string((colors.size() + columns - 1) / columns) + "\r\nCOLS " + std::to_string(columns) +
                          "\r\nWIDTH 16\r\nHEIGHT 16\r\nTEXTHEIGHT 0\r\nSPACING 1\r\n";
        char values[64];
        for (const auto& color : colors) {
            const RGB rgb = color.rgb();
            std::snprintf(values, sizeof values, "R: %03d, G:%03d, B:%03d HV:0.00, SV:0.00, VV:0.00 ", channelByte(rgb.rf),
                          channelByte(rgb.gf), channelByte(rgb.bf));
            out += values;
            out += textfile::singleLine(trimmed(color.name));
            out += "\r\n";
        }
        return out;
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeCorelPainterCoder() { return std::make_unique<CorelPainterCoder>(); }

}  // namespace PAL
