// gnuplot palettes (.gpf): a data file of "gray r g b" lines (or "r g b", the line number serving as
// gray), colours as fractions, gray rising and rescaled to 0...1, a repeated gray making a hard edge.
// The reader also takes a "set palette ... defined ( ... )" command, with numeric, "#rrggbb" and named
// colours. Writing makes the data file with the name in a comment; gnuplot has no alpha, so colours
// are laid over white.
#include <algorithm>
#include <cctype>
#include <cmath>

#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/gradients/GnuplotColorNames.h"
#include "exchange/gradients/GradientCoders.h"
#include "exchange/gradients/GradientSampling.h"

namespace PAL {

namespace {

using textfile::lowercased;
using textfile::requiredNumber;
using textfile::trimmed;

enum class Model { rgb, hsv, cmy };

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

RGB tripleColor(double a, double b, double c, Model model) {
    a = std::clamp(a, 0.0, 1.0), b = std::clamp(b, 0.0, 1.0), c = std::clamp(c, 0.0, 1.0);
    switch (model) {
    case Model::hsv: return hsbToRGB({a, b, c, 1});
    case Model::cmy: return {1 - a, 1 - b, 1 - c, 1};
    case Model::rgb: break;
    }
    return {a, b, c, 1};
}

RGB hexColor(std::string_view text) {
    if (text.size() != 7 || !std::all_of(text.begin() + 1, text.end(), [](unsigned char c) { return std::isxdigit(c); }))
        throw invalidFormat();
    return parseHex(text.substr(1), ColorByteFormat::rgb);
}

// gnuplot 6's packed colour, "0xRRGGBB".
std::optional<RGB> packedColor(std::string_view token) {
    if (!token.starts_with("0x") && !token.starts_with("0X")) return std::nullopt;
    return hexColor("#" + std::string(token.substr(2)));
}

struct Entry {
    double gray;
    RGB color;
};

std::vector<Entry> dataFileEntries(const std::vector<std::string_view>& lines) {
    std::vector<Entry> entries;
    for (const auto line : lines) {
        const auto text = trimmed(line.substr(0, line.find('#')));
        if (text.empty()) continue;
        const auto tokens = textfile::words(text);
        const double index = static_cast<double>(entries.size());
        const auto n = [&tokens](std::size_t i) { return requiredNumber(tokens[i]); };
        if (tokens.size() == 4) entries.push_back({n(0), tripleColor(n(1), n(2), n(3), Model::rgb)});
        else if (tokens.size() == 3) entries.push_back({index, tripleColor(n(0), n(1), n(2), Model::rgb)});
        else if (tokens.size() == 2 && packedColor(tokens[1])) entries.push_back({n(0), *packedColor(tokens[1])});
        else if (tokens.size() == 1 && packedColor(tokens[0])) entries.push_back({index, *packedColor(tokens[0])});
        else throw invalidFormat();
    }
    return entries;
}

Model paletteModel(std::string_view command) {
    const auto words = textfile::words(command);
    const auto model = std::find(words.begin(), words.end(), "model");
    if (model == words.end()) return Model::rgb;
    if (model + 1 == words.end()) throw invalidFormat();
    if (model[1] == "rgb") return Model::rgb;
    if (model[1] == "hsv") return Model::hsv;
    if (model[1] == "cmy") return Model::cmy;
    throw invalidFormat();  // XYZ and YIQ are not read
}

// One "gray colour" entry of a defined list: the colour as three numbers or one quoted text.
Entry definedEntry(std::string_view entry, Model model) {
    entry = trimmed(entry);
    const auto quote = entry.find_first_of("'\"");
    if (quote == std::string_view::npos) {
        const auto tokens = textfile::words(entry);
        if (tokens.size() != 4) throw invalidFormat();
        return {requiredNumber(tokens[0]), tripleColor(requiredNumber(tokens[1]), requiredNumber(tokens[2]), requiredNumber(tokens[3]), model)};
    }
    const auto close = entry.find(entry[quote], quote + 1);
    if (close == std::string_view::npos || !trimmed(entry.substr(close + 1)).empty()) throw invalidFormat();
    const std::string name = lowercased(trimmed(entry.substr(quote + 1, close - quote - 1)));
    if (name.starts_with('#')) return {requiredNumber(trimmed(entry.substr(0, quote))), hexColor(name)};
    const auto hex = gnuplotColorHex(name);
    if (!hex) throw invalidFormat();
    return {requiredNumber(trimmed(entry.substr(0, quote))), parseHex(hex->substr(1), ColorByteFormat::rgb)};
}

std::vector<Entry> definedEntries(const std::string& text) {
    const auto defined = text.find("defined");
    const auto open = text.find_first_not_of(" \t", defined + 7);
    if (open == std::string::npos || text[open] != '(') throw invalidFormat();
    const auto close = text.find(')', open);
    if (close == std::string::npos) throw invalidFormat();
    const Model model = paletteModel(std::string_view(text).substr(0, defined));
    std::vector<Entry> entries;
    for (const auto entry : textfile::fields(std::string_view(text).substr(open + 1, close - open - 1), ','))
        entries.push_back(definedEntry(entry, model));
    return entries;
}

Gradient gradientFromEntries(const std::vector<Entry>& entries) {
    if (entries.empty()) throw invalidFormat();
    const double first = entries.front().gray, last = entries.back().gray;
    Gradient gradient;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i > 0 && entries[i].gray < entries[i - 1].gray) throw invalidFormat();  // gray must rise
        const double position = last > first ? (entries[i].gray - first) / (last - first) : 0;
        gradient.stops.push_back({position, stopColor(entries[i].color)});
    }
    return gradient;
}

class GnuplotCoder final : public GradientsCoder {
public:
    GnuplotCoder() : GradientsCoder(GradientsFormat::gnuplot) {}
    using GradientsCoder::decode;

    Gradients decode(BytesParser::BytesReader& reader) const override {
        const std::string content = textfile::readText(reader);
        const auto lines = textfile::splitLines(content);
        const std::string command = lowercased(content);
        const bool isCommand = command.find("defined") != std::string::npos && command.find("palette") != std::string::npos;

        Gradient gradient = gradientFromEntries(isCommand ? definedEntries(command) : dataFileEntries(lines));
        if (!isCommand && !lines.empty() && trimmed(lines.front()).starts_with('#'))
            gradient.name = std::string(trimmed(trimmed(lines.front()).substr(1)));
        return singleGradient(GradientsFormat::gnuplot, std::move(gradient));
    }

    std::string encode(const Gradients& gradients) const override {
        const Gradient& gradient = onlyGradient(gradients);
        std::string out;
        if (!trimmed(gradient.name).empty()) out += "# " + textfile::singleLine(trimmed(gradient.name)) + "\n";
        bool dropsAlpha = false;
        // gnuplot stretches the gray values over the whole range: the stops must reach both ends.
        for (const auto& stop : spanningStops(gradient)) {
            const RGB rgba = stop.color.rgb();
            dropsAlpha = dropsAlpha || rgba.af < 1;
            const RGB color = overWhite(rgba);
            out += textfile::fixed(stop.position, 6) + " " + textfile::fixed(color.rf, 6) + " " + textfile::fixed(color.gf, 6) +
                   " " + textfile::fixed(color.bf, 6) + "\n";
        }
        if (dropsAlpha) logInfo("gnuplot Palette: alpha laid over white");
        return out;
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeGnuplotCoder() { return std::make_unique<GnuplotCoder>(); }

}  // namespace PAL
