// Skencil (Sketch) palettes (.spl): the line "##Sketch RGBPalette 0", then "r g b name" lines with
// values 0...1; "#" lines are comments. Skencil drops entries without a name and entries that repeat a
// name or a colour; the reader keeps them (the palette model allows both) and says so, and the writer
// gives every colour a name of its own so that Skencil keeps all of them.
#include <set>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

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

constexpr std::string_view magic = "##Sketch RGBPalette 0";
// What Python's "%g" writes, as Skencil does.
constexpr int significantDigits = 6;

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

// The next blank-separated word of `rest`, taken off its front.
std::string_view nextWord(std::string_view& rest) {
    rest = trimmed(rest);
    std::size_t end = 0;
    while (end < rest.size() && !isBlank(rest[end])) ++end;
    const auto word = rest.substr(0, end);
    rest.remove_prefix(end);
    return word;
}

// What the reader noticed that Skencil itself would not have taken.
struct Notes {
    bool clamped = false, unnamed = false, repeated = false;
    std::unordered_set<std::string> names;
    std::set<std::tuple<double, double, double>> values;
};

Color entry(std::string_view line, Notes& notes) {
    double rgb[3];
    for (double& value : rgb) {
        const auto number = textfile::number(nextWord(line));
        if (!number) refuse();
        value = heldWithin(*number, 1, notes.clamped);
    }
    std::string name(trimmed(line));
    notes.unnamed = notes.unnamed || name.empty();
    const bool newName = name.empty() || notes.names.insert(name).second;
    const bool newValues = notes.values.insert({rgb[0], rgb[1], rgb[2]}).second;
    notes.repeated = notes.repeated || !newName || !newValues;
    return Color::rgb(rgb[0], rgb[1], rgb[2], 1, std::move(name));
}

// Names that Skencil keeps apart: a colour's own name, or its hex value when it has none, with a number
// after a name already given. Each name remembers its next number, so that many equal names stay linear.
class UniqueNames {
public:
    std::string take(const Color& color) {
        std::string base = textfile::singleLine(trimmed(color.name));
        if (base.empty()) base = color.hexString(ColorByteFormat::rgb, true);
        if (used.insert(base).second) return base;
        int& suffix = nextSuffix.try_emplace(base, 2).first->second;
        std::string name;
        do name = base + " " + std::to_string(suffix++);
        while (!used.insert(name).second);
        return name;
    }

private:
    std::unordered_set<std::string> used;
    std::unordered_map<std::string, int> nextSuffix;
};

class SkencilCoder final : public PaletteCoder {
public:
    SkencilCoder() : PaletteCoder(PaletteFormat::skencil) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string text = textfile::fromBytes(textfile::remainingBytes(reader));
        const auto lines = textfile::splitLines(text);
        if (lines.empty() || trimmed(lines[0]) != magic) refuse();

        Palette palette;
        palette.format = PaletteFormat::skencil;
        Notes notes;
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const auto line = trimmed(lines[i]);
            if (line.empty() || line.starts_with('#')) continue;
            palette.colors.push_back(entry(line, notes));
        }
        if (notes.clamped) logInfo("PAL.Coder.Skencil: Values outside 0...1 were held at the nearest end");
        if (notes.unnamed) logInfo("PAL.Coder.Skencil: Colors without a name were kept; Skencil skips them");
        if (notes.repeated) logInfo("PAL.Coder.Skencil: Repeated names or colors were kept; Skencil skips them");
        return palette;
    }

    // Skencil compares the first line with its line feed included: LF only.
    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        std::string out = std::string(magic) + "\n";
        out.reserve(out.size() + colors.size() * 40);
        UniqueNames names;
        std::unordered_set<std::string> values;
        bool repeatedValues = false;
        for (const auto& color : colors) {
            const RGB rgb = color.rgb();
            const std::string line = textfile::significant(rgb.rf, significantDigits) + ' ' + textfile::significant(rgb.gf, significantDigits) +
                                     ' ' + textfile::significant(rgb.bf, significantDigits);
            repeatedValues = repeatedValues || !values.insert(line).second;
            out += line + '\t' + names.take(color) + '\n';
        }
        if (repeatedValues) logInfo("PAL.Coder.Skencil: The palette repeats colors; Skencil keeps only the first of each");
        return out;
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeSkencilCoder() { return std::make_unique<SkencilCoder>(); }

}  // namespace PAL
