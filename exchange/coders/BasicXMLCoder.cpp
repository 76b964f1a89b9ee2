// Kro's own simple XML palette, for people and scripts that want a palette in plain XML: a
// <basicPalette> of <color>s and <group>s of <color>s, each colour in its own colour space with its
// components written exactly. docs/formats/basic-xml.md describes it. Only the components (or a hex
// value) are required; everything else has a default, so a hand-written file can be short.
#include <algorithm>
#include <initializer_list>

#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/coders/XmlCoderSupport.h"

namespace PAL {

namespace {

using xml::attributeIgnoringCase;
using xml::attributeText;

constexpr std::string_view rootName = "basicPalette";

// Numbers separated by spaces, commas or both. (XML reads a line break in an attribute as a space.)
std::vector<double> componentList(std::string_view text) {
    std::string spaced(text);
    std::replace(spaced.begin(), spaced.end(), ',', ' ');
    std::vector<double> values;
    for (const auto word : textfile::words(spaced)) values.push_back(textfile::requiredNumber(word));
    return values;
}

// One of an enumeration's texts, in any letter case; the first case listed is the default.
template <typename Enum>
Enum choice(const xml::Element& element, std::string_view key, std::initializer_list<Enum> cases) {
    const auto value = attributeIgnoringCase(element, key);
    if (!value) return *cases.begin();
    for (Enum candidate : cases)
        if (xml::equalsIgnoringCase(xml::trimmedText(*value), text(candidate))) return candidate;
    throw CommonError(CommonError::Case::invalidFormat);
}

Color readColor(const xml::Element& element) {
    std::string name(attributeIgnoringCase(element, "name").value_or(""));
    const auto type = choice(element, "type", {ColorType::global, ColorType::spot, ColorType::normal});
    double alpha = 1;
    if (const auto text = attributeIgnoringCase(element, "alpha")) {
        const auto value = xml::numberText(*text);
        if (!value) throw CommonError(CommonError::Case::invalidFormat);
        alpha = *value;
    }
    const auto components = attributeIgnoringCase(element, "components");
    if (!components) {
        // A hand-written colour may be just a CSS-style hex value.
        const auto hex = attributeIgnoringCase(element, "hex");
        if (!hex) throw CommonError(CommonError::Case::invalidFormat);
        Color color = Color::hex(*hex, ColorByteFormat::rgba, std::move(name), type);
        return attributeIgnoringCase(element, "alpha") ? color.withAlpha(alpha) : color;
    }
    const auto space = choice(element, "space", {ColorSpace::RGB, ColorSpace::CMYK, ColorSpace::LAB, ColorSpace::Gray});
    auto values = componentList(*components);
    if (values.size() != static_cast<std::size_t>(componentCount(space)))
        throw CommonError(CommonError::Case::invalidColorComponentCountForModelType);
    return Color(space, std::move(values), alpha, std::move(name), type);
}

std::vector<Color> readColors(const xml::Element& parent) {
    std::vector<Color> colors;
    for (const xml::Element* element : xml::childrenIgnoringCase(parent, "color")) colors.push_back(readColor(*element));
    return colors;
}

void writeColors(std::string& out, const std::vector<Color>& colors, std::string_view indent) {
    for (const auto& color : colors) {
        std::string components;
        for (double value : color.colorComponents) components += (components.empty() ? "" : " ") + textfile::shortest(value);
        out += std::string(indent) + "<color" + (color.name.empty() ? "" : attributeText("name", color.name)) +
               attributeText("space", text(color.colorSpace)) + attributeText("components", components);
        if (color.alpha < 1) out += attributeText("alpha", textfile::shortest(color.alpha));
        if (color.colorType != ColorType::global) out += attributeText("type", text(color.colorType));
        out += "/>\n";
    }
}

class BasicXMLCoder final : public PaletteCoder {
public:
    BasicXMLCoder() : PaletteCoder(PaletteFormat::basicXML) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto document = xml::readDocument(reader);
        if (!xml::equalsIgnoringCase(document->localName(), rootName)) throw CommonError(CommonError::Case::invalidFormat);
        Palette palette(std::string(attributeIgnoringCase(*document, "name").value_or("")), readColors(*document));
        palette.format = PaletteFormat::basicXML;
        for (const xml::Element* group : xml::childrenIgnoringCase(*document, "group"))
            palette.groups.emplace_back(std::string(attributeIgnoringCase(*group, "name").value_or("")), readColors(*group));
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        std::string out = std::string(xml::declarationUTF8) + "<" + std::string(rootName) + " version=\"1\"" +
                          (palette.name.empty() ? "" : attributeText("name", palette.name)) + ">\n";
        writeColors(out, palette.colors, "  ");
        for (const auto& group : palette.groups) {
            out += "  <group" + attributeText("name", group.name) + ">\n";
            writeColors(out, group.colors, "    ");
            out += "  </group>\n";
        }
        return out + "</" + std::string(rootName) + ">\n";
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeBasicXMLCoder() { return std::make_unique<BasicXMLCoder>(); }

}  // namespace PAL
