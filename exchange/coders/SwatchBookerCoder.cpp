// SwatchBooker's palettes (.sbz): a zip archive holding "swatchbook.xml". The colours are defined once
// under <materials>, each under a unique dc:identifier; the <book> then lists them in display order,
// in groups that may nest, a colour any number of times. Names and groups survive; alpha does not.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <unordered_map>
#include <unordered_set>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/XmlTree.h"
#include "exchange/Zip.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

using xml::Element;

constexpr std::string_view documentName = "swatchbook.xml";

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

// ---- Reading ----

// The default-language text of a metadata field (the one without xml:lang), else its first translation.
std::optional<std::string> metadataText(const Element* metadata, std::string_view field) {
    if (!metadata) return std::nullopt;
    const Element* translated = nullptr;
    for (const Element* element : metadata->childrenNamed(field)) {
        if (!element->attribute("xml:lang")) return element->text;
        if (!translated) translated = element;
    }
    return translated ? std::optional(translated->text) : std::nullopt;
}

std::optional<std::vector<double>> numbers(std::string_view text) {
    std::vector<double> values;
    constexpr std::string_view whitespace = " \t\r\n";
    for (std::size_t start = text.find_first_not_of(whitespace); start != std::string_view::npos;
         start = text.find_first_not_of(whitespace, start)) {
        const std::size_t end = std::min(text.find_first_of(whitespace, start), text.size());
        const auto value = textfile::number(text.substr(start, end - start));
        if (!value) return std::nullopt;
        values.push_back(*value);
        start = end;
    }
    return values;
}

// CIE XYZ on a scale of 100, relative to D50 as in ICC profiles, to Lab D50.
Color labFromXYZ(double x, double y, double z) {
    const auto f = [](double t) { return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116; };
    const double fx = f(x / 96.422), fy = f(y / 100), fz = f(z / 82.521);
    return Color::lab(116 * fy - 16, 500 * (fx - fy), 200 * (fy - fz));
}

// One <values> element as a colour, for the models that map onto ours; nullopt for the others (the
// multi-ink nCLR models, YIQ) and for a component count that does not fit the model. Values in an ICC
// profile of the archive ("space") are taken as if in sRGB or Lab: the profiles are not applied.
std::optional<Color> valuesColor(std::string_view model, const std::vector<double>& v) {
    const auto unit = [](double value) { return std::clamp(value, 0.0, 1.0); };
    std::optional<Color> color;
    if (v.size() == 1 && model == "GRAY") color = Color::gray(1 - unit(v[0]));  // the amount of black
    if (v.size() == 4 && model == "CMYK") color = Color::cmyk(v[0], v[1], v[2], v[3]);
    if (v.size() == 3) {
        if (model == "RGB" || model == "sRGB") color = Color::rgb(v[0], v[1], v[2]);
        else if (model == "Lab") color = Color::lab(v[0], v[1], v[2]);
        else if (model == "CMY") color = Color::rgb(1 - unit(v[0]), 1 - unit(v[1]), 1 - unit(v[2]));
        else if (model == "HSV") color = Color::hsb(v[0], v[1], v[2]);
        else if (model == "HLS") {
            const RGB rgb = hslToRGB({unit(v[0]), unit(v[2]), unit(v[1])});
            color = Color::rgb(rgb.rf, rgb.gf, rgb.bf);
        } else if (model == "LCH") {
            const double hue = v[2] * std::numbers::pi / 180;
            color = Color::lab(v[0], v[1] * std::cos(hue), v[1] * std::sin(hue));
        } else if (model == "XYZ") {
            color = labFromXYZ(v[0], v[1], v[2]);
        } else if (model == "xyY" && v[1] > 0) {
            color = labFromXYZ(v[0] * v[2] / v[1], v[2], (1 - v[0] - v[1]) * v[2] / v[1]);
        }
    }
    const auto finite = [](double c) { return std::isfinite(c); };
    if (color && !std::all_of(color->colorComponents.begin(), color->colorComponents.end(), finite)) return std::nullopt;
    return color;
}

// Lower is preferred when a colour carries several models: RGB as the screen shows it, then the
// device-independent Lab, then CMYK and gray; any other model only when it is all there is.
int preference(std::string_view model) {
    if (model == "RGB" || model == "sRGB") return 0;
    if (model == "Lab") return 1;
    if (model == "CMYK") return 2;
    if (model == "GRAY") return 3;
    return 4;
}

// A material that is a colour, or nullopt when none of its values maps onto our models.
std::optional<Color> materialColor(const Element& material) {
    std::optional<Color> chosen;
    int chosenPreference = 5;
    for (const Element* values : material.childrenNamed("values")) {
        const std::string_view model = values->attribute("model").value_or("");
        if (preference(model) >= chosenPreference) continue;
        const auto components = numbers(values->text);
        if (!components) continue;
        if (auto color = valuesColor(model, *components)) chosen = std::move(color), chosenPreference = preference(model);
    }
    if (!chosen) return std::nullopt;
    const Element* metadata = material.firstChild("metadata");
    chosen->name = metadataText(metadata, "title").value_or(metadataText(metadata, "identifier").value_or(""));
    // "usage" is a comma-separated list; a spot colour has "spot" in it.
    for (const auto usage : textfile::fields(material.attribute("usage").value_or(""), ','))
        if (textfile::trimmed(usage) == "spot") chosen->colorType = ColorType::spot;
    return chosen;
}

class BookReader {
public:
    explicit BookReader(const Element& materials) {
        for (const Element* material : materials.childrenNamed("color"))
            if (const auto identifier = metadataText(material->firstChild("metadata"), "identifier"))
                materialsByIdentifier.try_emplace(*identifier, material);
    }

    // The book's items in order: top-level swatches are the palette's own colours, each group a group of
    // its own; a nested group is named after its parents ("Outer / Inner"). Breaks and spacers only lay
    // the book out, and a swatch of a pattern or of an unknown material is passed over. A material listed
    // twice gives two colours, each a value of its own.
    void read(const Element& items, Palette& palette, std::optional<std::size_t> group = std::nullopt, const std::string& path = {}) const {
        for (const auto& item : items.children) {
            if (item->localName() == "swatch") {
                const auto found = materialsByIdentifier.find(std::string(item->attribute("material").value_or("")));
                if (found == materialsByIdentifier.end()) continue;
                auto& colors = group ? palette.groups[*group].colors : palette.colors;
                if (auto color = materialColor(*found->second)) colors.push_back(std::move(*color));
            } else if (item->localName() == "group") {
                const std::string title = metadataText(item->firstChild("metadata"), "title").value_or("");
                const std::string name = path.empty() ? title : path + " / " + title;
                palette.groups.emplace_back(name);
                read(*item, palette, palette.groups.size() - 1, name);
            }
        }
    }

private:
    std::unordered_map<std::string, const Element*> materialsByIdentifier;
};

Palette readBook(const Element& root) {
    if (root.name != "SwatchBook") refuse();
    Palette palette(metadataText(root.firstChild("metadata"), "title").value_or(""));
    const Element* materials = root.firstChild("materials");
    const Element* book = root.firstChild("book");
    if (materials && book && !book->children.empty()) {
        BookReader(*materials).read(*book, palette);
    } else if (materials) {
        // No book to say the order: the materials in the order they are defined.
        for (const Element* material : materials->childrenNamed("color"))
            if (auto color = materialColor(*material)) palette.colors.push_back(std::move(*color));
    }
    palette.format = PaletteFormat::swatchbooker;
    return palette;
}

// ---- Writing ----

constexpr std::string_view header =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<SwatchBook version=\"0.7\"\n"
    "    xmlns:dc=\"http://purl.org/dc/elements/1.1/\"\n"
    "    xmlns:dcterms=\"http://purl.org/dc/terms/\"\n"
    "    xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
    "  <metadata>\n"
    "    <dc:format>application/swatchbook</dc:format>\n"
    "    <dc:type rdf:resource=\"http://purl.org/dc/dcmitype/Dataset\" />\n";

// Text for the document: a name that is not UTF-8 (from a file that stored Latin-1) would make the XML unreadable.
std::string xmlText(const std::string& text) { return xml::escaped(textfile::isValidUTF8(text) ? text : textfile::latin1ToUTF8(text)); }

std::string valuesElement(const Color& color) {
    std::string model;
    std::vector<double> components;
    switch (color.colorSpace) {
    case ColorSpace::CMYK: {
        const CMYK cmyk = color.cmyk();
        model = "CMYK", components = {cmyk.cf, cmyk.mf, cmyk.yf, cmyk.kf};
        break;
    }
    case ColorSpace::LAB: {
        const LAB lab = color.lab();
        model = "Lab", components = {lab.lf, lab.af, lab.bf};
        break;
    }
    case ColorSpace::Gray: model = "GRAY", components = {1 - color.gray()}; break;
    case ColorSpace::RGB: {
        const RGB rgb = color.rgb();
        model = "RGB", components = {rgb.rf, rgb.gf, rgb.bf};
        break;
    }
    }
    std::string text;
    for (const double component : components) text += (text.empty() ? "" : " ") + textfile::fixedTrimmed(component, 6);
    return "<values model=\"" + model + "\">" + text + "</values>";
}

class BookWriter {
public:
    std::string write(const Palette& palette) {
        std::string book;
        for (const Color& color : palette.colors) book += "    <swatch material=\"" + addMaterial(color) + "\" />\n";
        for (const Group& group : palette.groups) {
            book += "    <group>\n      <metadata>\n        <dc:title>" + xmlText(group.name) + "</dc:title>\n      </metadata>\n";
            for (const Color& color : group.colors) book += "      <swatch material=\"" + addMaterial(color) + "\" />\n";
            book += "    </group>\n";
        }
        std::string document(header);
        if (!palette.name.empty()) document += "    <dc:title>" + xmlText(palette.name) + "</dc:title>\n";
        document += "  </metadata>\n";
        document += materials.empty() ? "  <materials />\n" : "  <materials>\n" + materials + "  </materials>\n";
        document += book.empty() ? "  <book />\n" : "  <book>\n" + book + "  </book>\n";
        return document + "</SwatchBook>\n";
    }

private:
    // Adds the colour's material and returns its identifier, escaped for the document. An unnamed
    // colour is known by its place: "color1", "color2"…
    std::string addMaterial(const Color& color) {
        ++materialCount;
        const std::string name = xmlText(color.name);
        const std::string identifier = uniqueIdentifier(name.empty() ? "color" + std::to_string(materialCount) : name);
        materials += color.colorType == ColorType::spot ? "    <color usage=\"spot\">\n" : "    <color>\n";
        materials += "      <metadata>\n";
        if (!name.empty()) materials += "        <dc:title>" + name + "</dc:title>\n";
        materials += "        <dc:identifier>" + identifier + "</dc:identifier>\n      </metadata>\n";
        materials += "      " + valuesElement(color) + "\n    </color>\n";
        return identifier;
    }

    // The name itself, or with " 2", " 3"… when an earlier colour has it.
    std::string uniqueIdentifier(const std::string& name) {
        if (identifiers.insert(name).second) return name;
        int& suffix = nextSuffix.try_emplace(name, 2).first->second;
        while (!identifiers.insert(name + " " + std::to_string(suffix)).second) ++suffix;
        return name + " " + std::to_string(suffix++);
    }

    std::string materials;
    std::size_t materialCount = 0;
    std::unordered_set<std::string> identifiers;
    std::unordered_map<std::string, int> nextSuffix;
};

class SwatchBookerCoder final : public PaletteCoder {
public:
    SwatchBookerCoder() : PaletteCoder(PaletteFormat::swatchbooker) {}
    using PaletteCoder::decode;

    // Profiles and pattern images in the archive are not needed: colours are read from their values.
    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string document = zip::readDocument(reader, documentName);
        return readBook(*xml::parse(document));
    }

    std::string encode(const Palette& palette) const override {
        const std::string document = BookWriter().write(palette);
        return zip::write({{std::string(documentName), document}});
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeSwatchBookerCoder() { return std::make_unique<SwatchBookerCoder>(); }

}  // namespace PAL
