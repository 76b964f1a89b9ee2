// Scribus swatches: <SCRIBUSCOLORS Name="..."> holding <COLOR NAME="..." .../>. A colour is given
// either by a colour space and its components (SPACE="RGB|CMYK|Lab" with R G B 0-255, C M Y K in
// percent, or L A B), as Scribus 1.5 writes it, or by the older hex attributes RGB="#rrggbb" and
// CMYK="#ccmmyykk" that the shipped swatch files and other programs use. We write both on every
// colour, so that old and new Scribus, Krita and the converters all read our files.
#include <algorithm>
#include <cmath>

#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/coders/XmlCoderSupport.h"

namespace PAL {

namespace {

using xml::attributeIgnoringCase;
using xml::attributeText;

// Scribus reserves this name for "no colour".
constexpr std::string_view noColorName = "None";

// A component attribute; Scribus counts a missing one as 0.
std::optional<double> component(const xml::Element& element, std::string_view name) {
    const auto text = attributeIgnoringCase(element, name);
    return text ? xml::numberText(*text) : 0.0;
}

// Which attributes win follows Scribus: the colour space's components, then CMYK hex, then RGB hex,
// then Lab components without a space. Nullopt for a colour Scribus could only read as black.
std::optional<Color> readColor(const xml::Element& element, std::string name, ColorType type) {
    const auto space = attributeIgnoringCase(element, "SPACE");
    if (space && xml::equalsIgnoringCase(*space, "RGB")) {
        const auto r = component(element, "R"), g = component(element, "G"), b = component(element, "B");
        if (r && g && b) return Color::rgb255(*r, *g, *b, 255, std::move(name), type);
        return std::nullopt;
    }
    if (space && xml::equalsIgnoringCase(*space, "CMYK")) {
        const auto c = component(element, "C"), m = component(element, "M"), y = component(element, "Y"), k = component(element, "K");
        if (c && m && y && k) return Color::cmyk(*c / 100, *m / 100, *y / 100, *k / 100, 1, std::move(name), type);
        return std::nullopt;
    }
    const bool lab = space && xml::equalsIgnoringCase(*space, "Lab");
    if (const auto cmyk = attributeIgnoringCase(element, "CMYK"); cmyk && !lab) {
        const auto digits = xml::trimmedText(*cmyk);
        if (digits.size() != 9 || digits.front() != '#' || !textfile::isHexDigits(digits.substr(1))) return std::nullopt;
        const RGB inks = parseHex(digits, ColorByteFormat::rgba);  // four bytes, in the order written
        return Color::cmyk(inks.rf, inks.gf, inks.bf, inks.af, 1, std::move(name), type);
    }
    if (const auto rgb = attributeIgnoringCase(element, "RGB"); rgb && !lab) {
        const auto digits = xml::trimmedText(*rgb);
        if ((digits.size() != 4 && digits.size() != 7) || digits.front() != '#' || !textfile::isHexDigits(digits.substr(1))) return std::nullopt;
        return Color::hex(digits, ColorByteFormat::rgb, std::move(name), type);
    }
    if (lab || attributeIgnoringCase(element, "L") || attributeIgnoringCase(element, "A")) {
        const auto l = component(element, "L"), a = component(element, "A"), b = component(element, "B");
        if (l && a && b) return Color::lab(*l, *a, *b, 1, std::move(name), type);
    }
    return std::nullopt;
}

bool isSet(const xml::Element& element, std::string_view flag) {
    const auto value = attributeIgnoringCase(element, flag);
    return value && (xml::trimmedText(*value) == "1" || xml::equalsIgnoringCase(xml::trimmedText(*value), "true"));
}

std::string hexByte(double unit) {
    static const char* digits = "0123456789abcdef";
    const auto byte = static_cast<unsigned>(std::lround(std::clamp(unit, 0.0, 1.0) * 255));
    return {digits[byte >> 4], digits[byte & 15]};
}

std::string number(double value) { return textfile::fixedTrimmed(value, 4); }

// A gray is written as a black-ink tint, as Scribus's own "Shades of K" swatches hold greys.
// The hex form of a Lab colour is its sRGB rendering, for readers that know only the hex forms.
std::string colorAttributes(const Color& color) {
    const auto rgbHex = [&] { return attributeText("RGB", color.hexString(ColorByteFormat::rgb, true)); };
    switch (color.colorSpace) {
    case ColorSpace::CMYK:
    case ColorSpace::Gray: {
        const CMYK c = color.colorSpace == ColorSpace::CMYK ? color.cmyk() : CMYK{0, 0, 0, 1 - color.gray()};
        return attributeText("SPACE", "CMYK") + attributeText("C", number(c.cf * 100)) + attributeText("M", number(c.mf * 100)) +
               attributeText("Y", number(c.yf * 100)) + attributeText("K", number(c.kf * 100)) +
               attributeText("CMYK", "#" + hexByte(c.cf) + hexByte(c.mf) + hexByte(c.yf) + hexByte(c.kf));
    }
    case ColorSpace::LAB: {
        const LAB lab = color.lab();
        return attributeText("SPACE", "Lab") + attributeText("L", number(lab.lf)) + attributeText("A", number(lab.af)) +
               attributeText("B", number(lab.bf)) + rgbHex();
    }
    case ColorSpace::RGB: break;
    }
    const RGB rgb = color.rgb();
    return attributeText("SPACE", "RGB") + attributeText("R", number(rgb.rf * 255)) + attributeText("G", number(rgb.gf * 255)) +
           attributeText("B", number(rgb.bf * 255)) + rgbHex();
}

class ScribusXMLCoder final : public PaletteCoder {
public:
    ScribusXMLCoder() : PaletteCoder(PaletteFormat::scribusXML) {}
    using PaletteCoder::decode;

    // Colours with a repeated name are all kept, though Scribus shows only the first: a palette
    // manager loses nothing.
    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto document = xml::readDocument(reader);
        if (!xml::equalsIgnoringCase(document->localName(), "SCRIBUSCOLORS")) throw CommonError(CommonError::Case::invalidFormat);
        Palette palette(std::string(attributeIgnoringCase(*document, "Name").value_or("")));
        palette.format = PaletteFormat::scribusXML;
        for (const xml::Element* entry : xml::childrenIgnoringCase(*document, "COLOR")) {
            std::string name(attributeIgnoringCase(*entry, "NAME").value_or(""));
            if (name == noColorName) continue;
            const ColorType type = isSet(*entry, "Spot") ? ColorType::spot : ColorType::global;
            if (auto color = readColor(*entry, name, type)) palette.colors.push_back(std::move(*color));
            else logInfo(formatLogMessage("ScribusXMLCoder: skipped %@, which has no readable colour value", {name}));
        }
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        std::string out = std::string(xml::declarationUTF8) + "<SCRIBUSCOLORS" +
                          (palette.name.empty() ? "" : attributeText("Name", palette.name)) + ">\n";
        UniqueNames names;
        names.reserve(std::string(noColorName));
        for (const auto& color : palette.eachColor()) {
            out += " <COLOR" + attributeText("NAME", names.take(color)) + colorAttributes(color);
            if (color.colorType == ColorType::spot) out += attributeText("Spot", "1");
            out += "/>\n";
        }
        return out + "</SCRIBUSCOLORS>\n";
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeScribusXMLCoder() { return std::make_unique<ScribusXMLCoder>(); }

}  // namespace PAL
