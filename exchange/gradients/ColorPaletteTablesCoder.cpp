// Colour palette tables (.cpt) of GMT and cpt-city: slices "z0 colour0 z1 colour1" over any z range.
// Reading takes both eras' colour forms (three numbers per colour, or one token: r/g/b, h-s-v,
// c/m/y/k, #rrggbb, a name, a grey), maps z to 0...1, keeps hard edges between slices, and samples
// HSV tables; a table of single keys becomes equal bands. Writing uses the numeric form every reader
// accepts, with the background, foreground and NaN colours; there is no alpha, so colours are laid
// over white.
#include <algorithm>
#include <cctype>
#include <cmath>

#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/gradients/CSSColorText.h"
#include "exchange/gradients/GradientCoders.h"
#include "exchange/gradients/GradientSampling.h"

namespace PAL {

namespace {

using textfile::requiredNumber;
using textfile::trimmed;

enum class Model { rgb, hsv, cmyk };

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

RGB rgbFrom255(double r, double g, double b) {
    return {std::clamp(r / 255, 0.0, 1.0), std::clamp(g / 255, 0.0, 1.0), std::clamp(b / 255, 0.0, 1.0), 1};
}

RGB fromHSV(double h, double s, double v) {
    return hsbToRGB({(h - 360 * std::floor(h / 360)) / 360, std::clamp(s, 0.0, 1.0), std::clamp(v, 0.0, 1.0), 1});
}

RGB fromCMYK(double c, double m, double y, double k) {
    const auto ink = [k](double value) { return std::clamp((1 - value / 100) * (1 - k / 100), 0.0, 1.0); };
    return {ink(c), ink(m), ink(y), 1};
}

// A colour given as separate numbers, read by the table's colour model.
RGB numericColor(const std::vector<std::string_view>& values, Model model) {
    std::vector<double> n;
    for (const auto value : values) n.push_back(requiredNumber(value));
    if (n.size() == 4) return fromCMYK(n[0], n[1], n[2], n[3]);
    if (n.size() == 1) return rgbFrom255(n[0], n[0], n[0]);
    return model == Model::hsv ? fromHSV(n[0], n[1], n[2]) : rgbFrom255(n[0], n[1], n[2]);
}

// A colour as one token. "-" (no fill) and patterns have no colour: they read as transparent.
RGB tokenColor(std::string_view token, Model model) {
    double alpha = 1;
    if (const auto at = token.find('@'); at != std::string_view::npos) {
        alpha = 1 - std::clamp(requiredNumber(token.substr(at + 1)), 0.0, 100.0) / 100;
        token = token.substr(0, at);
    }
    RGB color;
    if (token == "-" || token.starts_with('p') || token.starts_with('P')) {
        logInfo("Color Palette Tables: a slice without a colour reads as transparent");
        color = {0, 0, 0, 0};
    } else if (const auto slashes = textfile::fields(token, '/'); slashes.size() == 3 || slashes.size() == 4) {
        color = numericColor(slashes, model);
    } else if (const auto hyphens = textfile::fields(token, '-'); hyphens.size() == 3 && !hyphens[0].empty()) {
        color = fromHSV(requiredNumber(hyphens[0]), requiredNumber(hyphens[1]), requiredNumber(hyphens[2]));
    } else if (textfile::number(token)) {
        color = numericColor({token}, model);
    } else if (const auto named = cssColor(token)) {
        color = *named;
    } else {
        throw invalidFormat();
    }
    color.af *= alpha;
    return color;
}

struct Slice {
    double z0, z1;
    RGB color0, color1;
};

// "z0 colour z1 colour [L|U|B] [;label]", the colours as one token or as three or four numbers.
Slice sliceLine(std::vector<std::string_view> tokens, Model model) {
    if (tokens.size() % 2 == 1 && tokens.back().size() == 1 &&
        std::string_view("LUB").find(tokens.back()) != std::string_view::npos)
        tokens.pop_back();
    const std::size_t half = tokens.size() / 2;
    if (tokens.size() % 2 != 0 || (half != 2 && half != 4 && half != 5)) throw invalidFormat();
    const std::vector<std::string_view> first(tokens.begin() + 1, tokens.begin() + static_cast<long>(half));
    const std::vector<std::string_view> second(tokens.begin() + static_cast<long>(half) + 1, tokens.end());
    const auto color = [model](const std::vector<std::string_view>& values) {
        return values.size() == 1 ? tokenColor(values.front(), model) : numericColor(values, model);
    };
    return {requiredNumber(tokens[0]), requiredNumber(tokens[half]), color(first), color(second)};
}

std::optional<Model> modelComment(std::string_view comment) {
    std::string text;
    for (char c : comment)
        if (c != ' ' && c != '\t') text += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (!text.starts_with("COLOR_MODEL=")) return std::nullopt;
    text.erase(0, 12);
    if (text.starts_with('+')) text.erase(0, 1);
    if (text == "RGB") return Model::rgb;
    if (text == "HSV") return Model::hsv;
    if (text == "CMYK") return Model::cmyk;
    throw invalidFormat();
}

Gradient gradientFromSlices(const std::vector<Slice>& slices, Model model) {
    const double zmin = slices.front().z0, zmax = slices.back().z1;
    if (!(zmax > zmin)) throw invalidFormat();
    const auto position = [&](double z) { return (z - zmin) / (zmax - zmin); };
    StopList stops;
    double previous = zmin;
    for (const auto& slice : slices) {
        if (slice.z0 < previous || slice.z1 < slice.z0) throw invalidFormat();  // slices go up
        previous = slice.z1;
        if (model == Model::hsv && !sameRGBA(slice.color0, slice.color1)) {
            const HSB from = rgbToHSB(slice.color0), to = rgbToHSB(slice.color1);
            stops.addSampled(position(slice.z0), position(slice.z1), [&](double f) {
                RGB rgb = hsbToRGB(
                    {from.hf + (to.hf - from.hf) * f, from.sf + (to.sf - from.sf) * f, from.bf + (to.bf - from.bf) * f, 1});
                rgb.af = from.af + (to.af - from.af) * f;
                return rgb;
            });
        } else {
            stops.add(position(slice.z0), slice.color0);
            stops.add(position(slice.z1), slice.color1);
        }
    }
    Gradient gradient;
    gradient.stops = stops.take();
    return gradient;
}

// A categorical table ("key colour" per line) has no ramp: its colours become equal bands in key order.
Gradient gradientFromKeys(const std::vector<RGB>& colors) {
    logInfo("Color Palette Tables: a categorical table reads as equal bands");
    StopList stops;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        stops.add(static_cast<double>(i) / colors.size(), colors[i]);
        stops.add(static_cast<double>(i + 1) / colors.size(), colors[i]);
    }
    Gradient gradient;
    gradient.stops = stops.take();
    return gradient;
}

std::string colorText(const RGB& rgba) {
    const RGB color = overWhite(rgba);
    // Bytes laid over white can land on a half exactly (136 at half alpha gives 195.5): it rounds up even
    // when floating point leaves it a hair below.
    const auto byte = [](double unit) {
        return std::to_string(static_cast<int>(std::round(std::clamp(unit, 0.0, 1.0) * 255 + 1e-9)));
    };
    return byte(color.rf) + " " + byte(color.gf) + " " + byte(color.bf);
}

class ColorPaletteTablesCoder final : public GradientsCoder {
public:
    ColorPaletteTablesCoder() : GradientsCoder(GradientsFormat::colorPaletteTables) {}
    using GradientsCoder::decode;

    Gradients decode(BytesParser::BytesReader& reader) const override {
        const std::string content = textfile::readText(reader);
        Model model = Model::rgb;
        std::string name;
        std::vector<Slice> slices;
        std::vector<RGB> keyColors;
        const auto lines = textfile::splitLines(content);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const auto line = trimmed(lines[i]);
            if (line.empty()) continue;
            if (line.front() == '#') {
                const auto comment = trimmed(line.substr(1));
                if (const auto found = modelComment(comment)) model = *found;
                else if (i == 0) name = std::string(comment);
                continue;
            }
            auto tokens = textfile::words(line.substr(0, line.find(';')));
            if (tokens.empty()) continue;
            if (tokens.front() == "B" || tokens.front() == "F" || tokens.front() == "N") continue;
            if (tokens.size() == 2) keyColors.push_back(tokenColor(tokens[1], model));
            else slices.push_back(sliceLine(std::move(tokens), model));
        }
        if (slices.empty() == keyColors.empty()) throw invalidFormat();  // no colours, or both kinds of table at once

        Gradient gradient = slices.empty() ? gradientFromKeys(keyColors) : gradientFromSlices(slices, model);
        gradient.name = name;
        return singleGradient(GradientsFormat::colorPaletteTables, std::move(gradient));
    }

    std::string encode(const Gradients& gradients) const override {
        const Gradient& gradient = onlyGradient(gradients);
        const auto stops = spanningStops(gradient);
        std::string out;
        if (!trimmed(gradient.name).empty()) out += "# " + textfile::singleLine(trimmed(gradient.name)) + "\n";
        out += "# COLOR_MODEL = RGB\n";
        bool dropsAlpha = false;
        for (std::size_t i = 0; i + 1 < stops.size(); ++i) {
            const RGB from = stops[i].color.rgb(), to = stops[i + 1].color.rgb();
            dropsAlpha = dropsAlpha || from.af < 1 || to.af < 1;
            // GMT wants z0 < z1: stops at one position start the next slice with the new colour.
            if (stops[i].position == stops[i + 1].position) continue;
            out += textfile::fixedTrimmed(stops[i].position, 6) + " " + colorText(from) + " " +
                   textfile::fixedTrimmed(stops[i + 1].position, 6) + " " + colorText(to) + "\n";
        }
        if (dropsAlpha) logInfo("Color Palette Tables: alpha laid over white");
        out += "B " + colorText(stops.front().color.rgb()) + "\nF " + colorText(stops.back().color.rgb()) + "\nN 128 128 128\n";
        return out;
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeColorPaletteTablesCoder() { return std::make_unique<ColorPaletteTablesCoder>(); }

}  // namespace PAL
