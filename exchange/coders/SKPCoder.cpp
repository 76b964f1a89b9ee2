// sK1 palettes (.skp): after "##sK1 palette", one Python call per line. sK1 executes the lines and
// swallows the ones that fail; we parse them with a small literal parser and skip, with a log line, the
// ones that are not palette calls, so one damaged entry does not cost the rest of the palette.
// Writing follows UniConvertor's layout, in plain ASCII that both sK1 generations read.
#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/PalUnit.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/PythonLiteral.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

using python::Value;

constexpr std::string_view magic = "##sK1 palette";

CommonError invalid() { return CommonError(CommonError::Case::invalidFormat); }

double numberOf(const Value& value) {
    if (value.kind != Value::Kind::number) throw invalid();
    return value.number;
}

const std::string& textOf(const Value& value) {
    if (value.kind != Value::Kind::string) throw invalid();
    return value.text;
}

std::vector<double> numbersOf(const Value& value, std::size_t count) {
    if (value.kind != Value::Kind::list || value.items.size() != count)
        throw CommonError(CommonError::Case::invalidColorComponentCountForModelType);
    std::vector<double> numbers;
    for (const auto& item : value.items) numbers.push_back(numberOf(item));
    return numbers;
}

// [model, values, alpha, name(, source palette)]. Lab is stored normalised to 0...1; a spot colour
// carries an RGB and a CMYK alternate, either possibly empty, and keeps the RGB one when it has it,
// since that is the colour sK1 shows on screen.
Color colorEntry(const Value& entry) {
    if (entry.kind != Value::Kind::list || entry.items.size() < 3) throw invalid();
    const std::string& model = textOf(entry.items[0]);
    const Value& values = entry.items[1];
    const double alpha = numberOf(entry.items[2]);
    std::string name = entry.items.size() > 3 ? textOf(entry.items[3]) : std::string();
    if (model == "RGB") {
        const auto v = numbersOf(values, 3);
        return Color::rgb(v[0], v[1], v[2], alpha, std::move(name));
    }
    if (model == "CMYK") {
        const auto v = numbersOf(values, 4);
        return Color::cmyk(v[0], v[1], v[2], v[3], alpha, std::move(name));
    }
    if (model == "Grayscale") return Color::gray(numbersOf(values, 1)[0], alpha, std::move(name));
    if (model == "LAB") {
        const auto v = numbersOf(values, 3);
        return Color::lab(v[0] * 100, v[1] * 255 - 128, v[2] * 255 - 128, alpha, std::move(name));
    }
    if (model == "SPOT") {
        if (values.kind != Value::Kind::list || values.items.size() != 2) throw invalid();
        const Value& rgb = values.items[0];
        const Value& cmyk = values.items[1];
        if (rgb.kind == Value::Kind::list && !rgb.items.empty()) {
            const auto v = numbersOf(rgb, 3);
            return Color::rgb(v[0], v[1], v[2], alpha, std::move(name), ColorType::spot);
        }
        const auto v = numbersOf(cmyk, 4);
        return Color::cmyk(v[0], v[1], v[2], v[3], alpha, std::move(name), ColorType::spot);
    }
    throw CommonError(CommonError::Case::unknownColorMode, model);
}

// UniConvertor's shortcuts, 0...255 or '#rrggbb'; an entry without a name is named by its hex.
Color shortcutEntry(const python::Call& call) {
    const auto& arguments = call.arguments;
    if (call.name == "hexcolor" && (arguments.size() == 1 || arguments.size() == 2)) {
        const std::string& hex = textOf(arguments[0]);
        return Color::hex(hex, ColorByteFormat::rgb, arguments.size() == 2 ? textOf(arguments[1]) : hex);
    }
    if (call.name == "rgbcolor" && (arguments.size() == 3 || arguments.size() == 4)) {
        Color color = Color::rgb255(numberOf(arguments[0]), numberOf(arguments[1]), numberOf(arguments[2]));
        color.name = arguments.size() == 4 ? textOf(arguments[3]) : color.hexString(ColorByteFormat::rgb, true);
        return color;
    }
    throw invalid();
}

// Python's float form: the shortest text that reads back, always with a point or an exponent.
std::string pythonFloat(double value) {
    std::string text = textfile::shortest(value);
    if (text.find_first_of(".e") == std::string::npos) text += ".0";
    return text;
}

std::string numberList(const std::vector<double>& values) {
    std::string out = "[";
    for (std::size_t i = 0; i < values.size(); ++i) out += (i ? ", " : "") + pythonFloat(values[i]);
    return out + "]";
}

std::string modelAndValues(const Color& color) {
    if (color.colorType == ColorType::spot) {
        if (color.colorSpace == ColorSpace::CMYK) {
            const CMYK c = color.cmyk();
            return "'SPOT', [[], " + numberList({c.cf, c.mf, c.yf, c.kf}) + "]";
        }
        const RGB c = color.rgb();
        return "'SPOT', [" + numberList({c.rf, c.gf, c.bf}) + ", []]";
    }
    switch (color.colorSpace) {
    case ColorSpace::CMYK: {
        const CMYK c = color.cmyk();
        return "'CMYK', " + numberList({c.cf, c.mf, c.yf, c.kf});
    }
    case ColorSpace::Gray: return "'Grayscale', " + numberList({color.gray()});
    case ColorSpace::LAB: {
        const LAB c = color.lab();
        return "'LAB', " + numberList({c.lf / 100, (c.af + 128) / 255, (c.bf + 128) / 255});
    }
    case ColorSpace::RGB: break;
    }
    const RGB c = color.rgb();
    return "'RGB', " + numberList({c.rf, c.gf, c.bf});
}

class SKPCoder final : public PaletteCoder {
public:
    SKPCoder() : PaletteCoder(PaletteFormat::skp) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string text = textfile::readText(reader);
        if (!text.starts_with(magic)) throw invalid();
        const auto lines = textfile::splitLines(text);
        Palette palette;
        palette.format = PaletteFormat::skp;
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const std::string_view line = textfile::trimmed(lines[i]);
            if (line.empty() || line.front() == '#') continue;
            const auto call = python::parseCall(line);
            if (call && call->name == "palette_end") break;
            try {
                if (!call) throw invalid();
                apply(*call, palette);
            } catch (const CommonError&) {
                logInfo(formatLogMessage("sK1 palette: line %d skipped", {std::to_string(i + 1)}));
            }
        }
        if (palette.colors.empty()) throw invalid();
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        std::string out = std::string(magic) + "\npalette()\nset_name(" + python::literal(palette.name) +
                          ")\nset_source('Kro')\nset_columns(1)\n";
        const std::string source = python::literal(palette.name);
        for (const auto& color : palette.eachColor()) {
            out += "color([" + modelAndValues(color) + ", " + pythonFloat(color.alpha) + ", " + python::literal(color.name);
            out += color.colorType == ColorType::spot ? ", " + source + "])\n" : "])\n";
        }
        return out + "palette_end()\n";
    }

private:
    // The source, comments and column count have no place in a palette here and are passed over.
    static void apply(const python::Call& call, Palette& palette) {
        const auto& arguments = call.arguments;
        if (call.name == "color" && arguments.size() == 1) palette.colors.push_back(colorEntry(arguments[0]));
        else if (call.name == "set_name" && arguments.size() == 1) palette.name = textOf(arguments[0]);
        else if (call.name == "hexcolor" || call.name == "rgbcolor") palette.colors.push_back(shortcutEntry(call));
        else if (call.name != "palette" && call.name != "set_source" && call.name != "add_comments" && call.name != "set_columns")
            throw invalid();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeSKPCoder() { return std::make_unique<SKPCoder>(); }

}  // namespace PAL
