// SVG gradients (.svg). Reading takes every linearGradient and radialGradient of a document that holds
// stops of its own (Inkscape's positioned copies, which only point at another gradient, would otherwise
// appear twice), with the stop rules browsers apply. Writing makes one linearGradient per gradient with
// a preview rectangle each, using attributes rather than style and always stop-opacity, which Krita
// needs; the name goes into a <title>, since an id cannot hold every name.
#include <cctype>
#include <cmath>
#include <set>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/XmlTree.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/gradients/CSSColorText.h"
#include "exchange/gradients/GradientCoders.h"
#include "exchange/gradients/GradientSampling.h"

namespace PAL {

namespace {

using textfile::trimmed;
using textfile::fixedTrimmed;

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

// A presentation property: a declaration in `style` wins over the attribute of the same name.
std::optional<std::string_view> property(const xml::Element& element, std::string_view name) {
    if (const auto style = element.attribute("style")) {
        for (const auto declaration : textfile::fields(*style, ';')) {
            const auto colon = declaration.find(':');
            if (colon != std::string_view::npos && trimmed(declaration.substr(0, colon)) == name)
                return trimmed(declaration.substr(colon + 1));
        }
    }
    return element.attribute(name);
}

double offset(const xml::Element& stop) {
    auto text = trimmed(stop.attribute("offset").value_or("0"));
    const bool percent = text.ends_with('%');
    if (percent) text.remove_suffix(1);
    const double value = textfile::number(trimmed(text)).value_or(0);
    return std::clamp(percent ? value / 100 : value, 0.0, 1.0);
}

// Krita may follow the sRGB colour with an ICC colour: only the first token counts. A colour that
// cannot be resolved here (currentColor, inherit, a mistake) is drawn black, as renderers do.
RGB stopRGBA(const xml::Element& stop) {
    auto colorText = trimmed(property(stop, "stop-color").value_or("black"));
    using textfile::startsWithIgnoringCase;
    if (!startsWithIgnoringCase(colorText, "rgb") && !startsWithIgnoringCase(colorText, "hsl"))
        colorText = colorText.substr(0, colorText.find(' '));
    RGB color = cssColor(colorText).value_or(RGB{0, 0, 0, 1});
    const auto opacityText = trimmed(property(stop, "stop-opacity").value_or("1"));
    double opacity = 1;
    if (opacityText.ends_with('%')) opacity = textfile::number(opacityText.substr(0, opacityText.size() - 1)).value_or(100) / 100;
    else opacity = textfile::number(opacityText).value_or(1);
    color.af *= std::clamp(opacity, 0.0, 1.0);
    return color;
}

std::optional<Gradient> gradientElement(const xml::Element& element) {
    const auto stopElements = element.childrenNamed("stop");
    if (stopElements.empty()) return std::nullopt;  // refers to another gradient's stops
    Gradient gradient;
    if (const auto* title = element.firstChild("title")) gradient.name = std::string(trimmed(title->text));
    if (gradient.name.empty()) gradient.name = std::string(element.attribute("id").value_or(""));
    if (stopElements.size() < 2) {
        logInfo("SVG Gradients: skipped \"" + gradient.name + "\", which has a single stop");
        return std::nullopt;
    }
    // An offset below an earlier one is raised to it.
    double largest = 0;
    for (const auto* stop : stopElements) {
        largest = std::max(largest, offset(*stop));
        gradient.stops.push_back({largest, stopColor(stopRGBA(*stop))});
    }
    gradient.normalize();
    return gradient;
}

void collect(const xml::Element& element, std::vector<Gradient>& gradients) {
    const auto name = element.localName();
    if (name == "linearGradient" || name == "radialGradient") {
        if (auto gradient = gradientElement(element)) gradients.push_back(std::move(*gradient));
        return;
    }
    for (const auto& child : element.children) collect(*child, gradients);
}

// An XML name unique in the document: ASCII letters, digits, '-', '_' and '.' kept, anything else '_'.
std::string elementID(std::string_view name, std::set<std::string>& taken) {
    std::string base;
    for (unsigned char c : name) base += std::isalnum(c) || c == '-' || c == '_' || c == '.' ? static_cast<char>(c) : '_';
    if (base.empty()) base = "gradient";
    if (std::isdigit(static_cast<unsigned char>(base.front())) || base.front() == '-' || base.front() == '.') base.insert(0, "_");
    std::string candidate = base;
    for (int suffix = 2; !taken.insert(candidate).second; ++suffix) candidate = base + "-" + std::to_string(suffix);
    return candidate;
}

std::string stopElement(const GradientStop& stop) {
    const RGB color = stop.color.rgb();
    return "      <stop offset=\"" + fixedTrimmed(stop.position, 6) + "\" stop-color=\"" +
           stop.color.hexString(ColorByteFormat::rgb, true) + "\" stop-opacity=\"" + fixedTrimmed(color.af, 4) + "\"/>\n";
}

class SVGGradientCoder final : public GradientsCoder {
public:
    SVGGradientCoder() : GradientsCoder(GradientsFormat::svg) {}
    using GradientsCoder::decode;

    Gradients decode(BytesParser::BytesReader& reader) const override {
        const auto bytes = reader.readAll();
        const auto document = xml::parse(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        Gradients gradients;
        gradients.format = GradientsFormat::svg;
        collect(*document, gradients.gradients);
        if (gradients.gradients.empty()) throw invalidFormat();
        return gradients;
    }

    std::string encode(const Gradients& gradients) const override {
        const auto& list = writableGradients(gradients);
        std::string definitions, previews;
        std::set<std::string> taken;
        for (std::size_t i = 0; i < list.size(); ++i) {
            const auto& gradient = list[i];
            const std::string id = elementID(gradient.name, taken);
            definitions += "    <linearGradient id=\"" + id + "\" x1=\"0%\" y1=\"0%\" x2=\"100%\" y2=\"0%\">\n";
            if (!gradient.name.empty()) definitions += "      <title>" + xml::escaped(gradient.name) + "</title>\n";
            for (const auto& stop : spanningStops(gradient)) definitions += stopElement(stop);
            definitions += "    </linearGradient>\n";
            previews += "  <rect y=\"" + std::to_string(32 * i) + "\" width=\"256\" height=\"32\" fill=\"url(#" + id + ")\"/>\n";
        }
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"256\" height=\"" +
               std::to_string(32 * list.size()) + "\">\n  <defs>\n" + definitions + "  </defs>\n" + previews + "</svg>\n";
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeSVGGradientCoder() { return std::make_unique<SVGGradientCoder>(); }

}  // namespace PAL
