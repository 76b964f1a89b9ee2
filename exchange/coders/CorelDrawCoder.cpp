// CorelDRAW's XML palettes (X5 and later): <palette name="..."> with <colors> holding <page>s of
// <color cs="MODEL" tints="..." name="..."/>, tints being comma-separated values in 0...1. Named
// inks (spot colours) are defined once under <colorspaces> and referred to by name from the pages.
// Library palettes may name things through <localization> instead. Pages are the palette's groups.
#include <algorithm>
#include <cctype>
#include <unordered_map>

#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/coders/XmlCoderSupport.h"
#include "platform/Json.h"

namespace PAL {

namespace {

using xml::attributeIgnoringCase;
using xml::childrenIgnoringCase;
using xml::equalsIgnoringCase;
using xml::firstChildIgnoringCase;

std::optional<ColorSpace> modelNamed(std::string_view cs) {
    if (equalsIgnoringCase(cs, "RGB") || equalsIgnoringCase(cs, "sRGB")) return ColorSpace::RGB;
    if (equalsIgnoringCase(cs, "CMYK")) return ColorSpace::CMYK;
    if (equalsIgnoringCase(cs, "LAB")) return ColorSpace::LAB;
    if (equalsIgnoringCase(cs, "Gray")) return ColorSpace::Gray;
    return std::nullopt;  // other models (Hexachrome, Adobe RGB, ...) are not guessed at
}

std::optional<std::vector<double>> tintsOf(const xml::Element& color) {
    std::vector<double> values;
    for (const auto field : textfile::fields(attributeIgnoringCase(color, "tints").value_or(""), ',')) {
        const auto value = xml::numberText(field);
        if (!value) return std::nullopt;
        values.push_back(*value);
    }
    return values;
}

// A colour in one of the known models from its tints; nullopt when there are too few (some
// generators write short lists). L*a*b* is scaled into 0...1 with 255 both ways, so it round-trips.
std::optional<Color> modelColor(const xml::Element& color, std::string name, ColorType type) {
    const auto model = modelNamed(attributeIgnoringCase(color, "cs").value_or(""));
    const auto t = tintsOf(color);
    if (!model || !t || t->size() < static_cast<std::size_t>(componentCount(*model))) return std::nullopt;
    const auto& v = *t;
    switch (*model) {
    case ColorSpace::RGB: return Color::rgb(v[0], v[1], v[2], 1, std::move(name), type);
    case ColorSpace::CMYK: return Color::cmyk(v[0], v[1], v[2], v[3], 1, std::move(name), type);
    case ColorSpace::LAB: return Color::lab(v[0] * 100, v[1] * 255 - 128, v[2] * 255 - 128, 1, std::move(name), type);
    case ColorSpace::Gray: return Color::gray(v[0], 1, std::move(name), type);  // 1 is white
    }
    return std::nullopt;
}

// A tint below 1 of an ink: less ink, or as much lighter towards paper white.
Color tinted(Color color, double tint) {
    tint = std::clamp(tint, 0.0, 1.0);
    auto& c = color.colorComponents;
    switch (color.colorSpace) {
    case ColorSpace::CMYK:
        for (auto& ink : c) ink *= tint;
        break;
    case ColorSpace::RGB:
    case ColorSpace::Gray:
        for (auto& value : c) value += (1 - value) * (1 - tint);
        break;
    case ColorSpace::LAB:
        c[0] += (100 - c[0]) * (1 - tint);
        c[1] *= tint;
        c[2] *= tint;
        break;
    }
    return color;
}

// A named ink of <colorspaces> from its definitions in one or more models, the first readable one
// used. An ink marked "process" is no spot colour.
std::optional<Color> inkColor(const xml::Element& definition, const std::string& name) {
    const ColorType type = attributeIgnoringCase(definition, "process") ? ColorType::global : ColorType::spot;
    for (const xml::Element* alternate : childrenIgnoringCase(definition, "color"))
        if (auto color = modelColor(*alternate, name, type)) return color;
    return std::nullopt;
}

class CorelReading {
public:
    explicit CorelReading(const xml::Element& root) : root_(root) {
        if (const auto* localization = firstChildIgnoringCase(root, "localization"))
            for (const xml::Element* resource : childrenIgnoringCase(*localization, "resource"))
                localized_.emplace(resource->attribute("id").value_or(""), localizedText(*resource));
        if (const auto* spaces = firstChildIgnoringCase(root, "colorspaces"))
            for (const xml::Element* definition : childrenIgnoringCase(*spaces, "cs")) {
                inkNames_.emplace_back(attributeIgnoringCase(*definition, "name").value_or(""));
                inks_.emplace(inkNames_.back(), definition);
            }
    }

    Palette palette() {
        Palette palette(paletteName());
        palette.format = PaletteFormat::corelDraw;
        std::vector<const xml::Element*> pages;
        if (const auto* colors = firstChildIgnoringCase(root_, "colors")) pages = childrenIgnoringCase(*colors, "page");
        for (std::size_t i = 0; i < pages.size(); ++i) {
            const auto name = attributeIgnoringCase(*pages[i], "name");
            auto colors = pageColors(*pages[i]);
            if (i == 0 && !name && firstPageIsGlobal(pages)) palette.colors = std::move(colors);
            else palette.groups.emplace_back(name ? std::string(*name) : "Page " + std::to_string(i + 1), std::move(colors));
        }
        // Some palettes only define their inks and list no page colours: the inks are the palette.
        if (colorElements_ == 0)
            for (const auto& name : inkNames_)
                if (!isRepeatedInk(name))
                    if (auto color = inkColor(*inks_.at(name), name)) palette.colors.push_back(std::move(*color));
        return palette;
    }

private:
    static std::string localizedText(const xml::Element& resource) {
        const xml::Element* text = firstChildIgnoringCase(resource, "EN");
        if (!text && !resource.children.empty()) text = resource.children.front().get();
        return text ? std::string(xml::trimmedText(text->text)) : std::string();
    }

    std::string textOf(const xml::Element& element) const {
        if (const auto name = attributeIgnoringCase(element, "name")) return std::string(*name);
        if (const auto id = attributeIgnoringCase(element, "resid"))
            if (const auto found = localized_.find(std::string(*id)); found != localized_.end()) return found->second;
        return {};
    }

    // Old colour books carry only a prefix ("TRUMATCH ") where others have a name.
    std::string paletteName() const {
        std::string name = textOf(root_);
        if (name.empty()) name = textfile::trimmed(attributeIgnoringCase(root_, "prefix").value_or(""));
        return name;
    }

    // Corel's own pages carry no names, and each is a group. The shape our writer gives a palette
    // with global colours and groups, an unnamed first page followed by named ones, reads back as it was.
    static bool firstPageIsGlobal(const std::vector<const xml::Element*>& pages) {
        return std::all_of(pages.begin() + 1, pages.end(), [](const xml::Element* page) { return attributeIgnoringCase(*page, "name").has_value(); });
    }

    // Libraries repeat some inks as "NAME (2)" beside "NAME".
    bool isRepeatedInk(const std::string& name) const {
        return name.ends_with(" (2)") && inks_.contains(name.substr(0, name.size() - 4));
    }

    std::vector<Color> pageColors(const xml::Element& page) {
        std::vector<Color> colors;
        for (const xml::Element* entry : childrenIgnoringCase(page, "color")) {
            ++colorElements_;
            const std::string cs(attributeIgnoringCase(*entry, "cs").value_or(""));
            std::string name = textOf(*entry);
            std::optional<Color> color;
            if (modelNamed(cs)) {
                color = modelColor(*entry, std::move(name), ColorType::global);
            } else if (const auto ink = inks_.find(cs); ink != inks_.end()) {
                const auto tints = tintsOf(*entry);
                color = inkColor(*ink->second, name.empty() ? cs : name);
                if (color && tints && !tints->empty() && tints->front() < 1) color = tinted(std::move(*color), tints->front());
            }
            if (color) colors.push_back(std::move(*color));
            else logInfo(formatLogMessage("CorelDrawCoder: skipped a colour in %@, which is not readable", {cs}));
        }
        return colors;
    }

    const xml::Element& root_;
    std::unordered_map<std::string, std::string> localized_;
    std::vector<std::string> inkNames_;  // in file order
    std::unordered_map<std::string, const xml::Element*> inks_;
    std::size_t colorElements_ = 0;
};

std::string tintsText(const std::vector<double>& values) {
    std::string out;
    for (double value : values) out += (out.empty() ? "" : ",") + textfile::fixedTrimmed(value, 6);
    return out;
}

std::string nameAttribute(const std::string& name) { return name.empty() ? "" : xml::attributeText("name", name); }

// <color cs="MODEL" name="..." tints="..."/> for a colour in a model of its own (an unnamed one
// without the name), at the indent of a page's or an ink's colours.
std::string modelColorElement(const Color& color, const std::string& name) {
    std::string cs;
    std::vector<double> tints;
    switch (color.colorSpace) {
    case ColorSpace::CMYK: {
        const CMYK c = color.cmyk();
        cs = "CMYK", tints = {c.cf, c.mf, c.yf, c.kf};
        break;
    }
    case ColorSpace::LAB: {
        const LAB l = color.lab();
        cs = "LAB", tints = {l.lf / 100, (l.af + 128) / 255, (l.bf + 128) / 255};
        break;
    }
    case ColorSpace::Gray: cs = "Gray", tints = {color.gray()}; break;
    case ColorSpace::RGB: {
        const RGB c = color.rgb();
        cs = "RGB", tints = {c.rf, c.gf, c.bf};
        break;
    }
    }
    return "      <color" + xml::attributeText("cs", cs) + nameAttribute(name) + xml::attributeText("tints", tintsText(tints)) + "/>\n";
}

class CorelDrawCoder final : public PaletteCoder {
public:
    CorelDrawCoder() : PaletteCoder(PaletteFormat::corelDraw) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto document = xml::readDocument(reader);
        if (!equalsIgnoringCase(document->localName(), "palette")) throw CommonError(CommonError::Case::invalidFormat);
        return CorelReading(*document).palette();
    }

    // Spot colours become inks under <colorspaces>, each defined in its own model first and then in
    // CMYK and RGB, and are placed on the pages by name at full strength.
    std::string encode(const Palette& palette) const override {
        std::string guid = kro::newUUID();
        std::transform(guid.begin(), guid.end(), guid.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        std::string out = std::string(xml::declarationUTF8) + "<palette" + xml::attributeText("guid", guid) + nameAttribute(palette.name) + ">\n";

        UniqueNames inkNames;
        for (const char* model : {"CMYK", "RGB", "sRGB", "LAB", "Gray"}) inkNames.reserve(model);
        std::string inks;
        int fixedID = 0;
        const auto pageEntries = [&](const std::vector<Color>& colors) {
            std::string entries;
            for (const auto& color : colors) {
                if (color.colorType != ColorType::spot) {
                    entries += modelColorElement(color, color.name);
                    continue;
                }
                const std::string ink = inkNames.take(color);
                inks += "    <cs" + xml::attributeText("name", ink) + xml::attributeText("fixedID", std::to_string(++fixedID)) + ">\n";
                inks += modelColorElement(color, "");
                for (const ColorSpace alternate : {ColorSpace::CMYK, ColorSpace::RGB})
                    if (alternate != color.colorSpace) inks += modelColorElement(color.converted(alternate), "");
                inks += "    </cs>\n";
                entries += "      <color" + xml::attributeText("cs", ink) + xml::attributeText("name", ink) + " tints=\"1\"/>\n";
            }
            return entries;
        };

        std::string pages;
        if (!palette.colors.empty() || palette.groups.empty()) pages += "    <page>\n" + pageEntries(palette.colors) + "    </page>\n";
        for (const auto& group : palette.groups)
            pages += "    <page" + xml::attributeText("name", group.name) + ">\n" + pageEntries(group.colors) + "    </page>\n";

        if (!inks.empty()) out += "  <colorspaces>\n" + inks + "  </colorspaces>\n";
        return out + "  <colors>\n" + pages + "  </colors>\n</palette>\n";
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeCorelDrawCoder() { return std::make_unique<CorelDrawCoder>(); }

}  // namespace PAL
