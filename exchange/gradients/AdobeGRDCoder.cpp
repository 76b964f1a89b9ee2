// Photoshop gradients (.grd), read only. Version 3 is the old fixed layout (shared with Paint Shop
// Pro); version 5, written since Photoshop 6, is a serialised descriptor holding a list of gradients,
// each with a colour track and an opacity track that are flattened into stops. Noise gradients have
// no stops and are skipped, with a note in the log.
#include <algorithm>
#include <cmath>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/gradients/GRDDescriptor.h"
#include "exchange/gradients/GRDTracks.h"
#include "exchange/gradients/GRDVersion3.h"
#include "exchange/gradients/GradientCoders.h"

namespace PAL {

namespace {

using grd::Value;
constexpr double locationScale = 4096;
const RGB midGray{0.5, 0.5, 0.5, 1};

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

double component(const Value& color, std::string_view key, double scale) {
    return std::clamp(color.numberAt(key).value_or(0) / scale, 0.0, 1.0);
}

// A colour object of any of Photoshop's models. Book colours store no values: mid grey stands in.
RGB objectColor(const Value& color) {
    const auto& model = color.classID;
    if (model == "RGBC") return {component(color, "Rd  ", 255), component(color, "Grn ", 255), component(color, "Bl  ", 255), 1};
    if (model == "HSBC") {
        const double hue = color.numberAt("H   ").value_or(0);
        return hsbToRGB(
            {(hue - 360 * std::floor(hue / 360)) / 360, component(color, "Strt", 100), component(color, "Brgh", 100), 1});
    }
    if (model == "CMYC") {
        const double k = component(color, "Blck", 100);
        const auto ink = [&](std::string_view key) { return (1 - component(color, key, 100)) * (1 - k); };
        return {ink("Cyn "), ink("Mgnt"), ink("Ylw "), 1};
    }
    if (model == "LbCl")
        return Color::lab(color.numberAt("Lmnc").value_or(0), color.numberAt("A   ").value_or(0),
                          color.numberAt("B   ").value_or(0))
            .rgb();
    if (model == "Grsc") {
        const double white = 1 - component(color, "Gry ", 100);
        return {white, white, white, 1};
    }
    logInfo("Photoshop Gradients: a colour of model \"" + model + "\" has no values; mid grey stands in");
    return midGray;
}

double location(const Value& stop) { return std::clamp(stop.numberAt("Lctn").value_or(0) / locationScale, 0.0, 1.0); }
double midpoint(const Value& stop) { return std::clamp(stop.numberAt("Mdpn").value_or(50) / 100, 0.0, 1.0); }

// Foreground and background stops carry no colour: Photoshop's default black and white stand in.
RGB stopColor(const Value& stop) {
    const Value* type = stop.find("Type");
    if (type && type->text == "FrgC") return {0, 0, 0, 1};
    if (type && type->text == "BckC") return {1, 1, 1, 1};
    const Value* color = stop.find("Clr ");
    return color && color->type == "Objc" ? objectColor(*color) : midGray;
}

std::vector<TrackStop> track(const Value& gradient, std::string_view key, bool opacity) {
    std::vector<TrackStop> stops;
    const Value* list = gradient.find(key);
    if (!list || list->type != "VlLs") return stops;
    for (const auto& stop : list->children) {
        if (stop.type != "Objc") throw invalidFormat();
        const RGB value =
            opacity ? RGB{0, 0, 0, std::clamp(stop.numberAt("Opct").value_or(100) / 100, 0.0, 1.0)} : stopColor(stop);
        stops.push_back({location(stop), midpoint(stop), value});
    }
    return stops;
}

// Names of Adobe's presets are localisable keys, "$$$/DefaultGradient/Name=Shown Name": the shown part is kept.
std::string displayName(const std::string& name) {
    const auto equals = name.find('=');
    return name.starts_with("$$$/") && equals != std::string::npos ? name.substr(equals + 1) : name;
}

std::optional<Gradient> gradientObject(const Value& entry) {
    const Value* grad = entry.find("Grad");
    if (!grad || grad->type != "Objc") throw invalidFormat();
    Gradient gradient;
    if (const Value* name = grad->find("Nm  ")) gradient.name = displayName(name->text);
    const Value* form = grad->find("GrdF");
    if (form && form->text == "ClNs") {
        logInfo("Photoshop Gradients: skipped the noise gradient \"" + gradient.name + "\", which has no stops");
        return std::nullopt;
    }
    auto colors = track(*grad, "Clrs", false);
    if (colors.empty()) {
        logInfo("Photoshop Gradients: skipped \"" + gradient.name + "\", which has no colour stop");
        return std::nullopt;
    }
    gradient.stops = flattenedTracks(std::move(colors), track(*grad, "Trns", true), MidpointOwner::endingStop);
    gradient.normalize();
    return gradient;
}

std::vector<Gradient> version5Gradients(std::string_view bytes) {
    BytesParser::BytesReader reader(bytes);
    reader.readBytes(6);
    if (reader.readInteger<std::uint32_t>(BytesParser::Endianness::big) != 16) throw invalidFormat();
    const Value root = grd::readDescriptor(reader);
    const Value* list = root.find("GrdL");
    if (!list || list->type != "VlLs") throw invalidFormat();
    std::vector<Gradient> gradients;
    for (const auto& entry : list->children) {
        if (entry.type != "Objc") throw invalidFormat();
        if (auto gradient = gradientObject(entry)) gradients.push_back(std::move(*gradient));
    }
    if (gradients.empty()) throw invalidFormat();
    return gradients;
}

class AdobeGRDCoder final : public GradientsCoder {
public:
    AdobeGRDCoder() : GradientsCoder(GradientsFormat::adobeGRD) {}
    using GradientsCoder::decode;

    Gradients decode(BytesParser::BytesReader& reader) const override {
        const auto data = reader.readAll();
        const std::string_view bytes(reinterpret_cast<const char*>(data.data()), data.size());
        const auto version = grdVersion(bytes);
        if (!version) throw invalidFormat();
        Gradients gradients;
        gradients.format = GradientsFormat::adobeGRD;
        try {
            if (*version == 3) gradients.gradients = grdVersion3Gradients(bytes);
            else if (*version == 5) gradients.gradients = version5Gradients(bytes);
            else throw CommonError(CommonError::Case::invalidVersion, *version);
        } catch (const BytesParser::ReaderError&) {
            throw invalidFormat();  // cut short
        }
        return gradients;
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeAdobeGRDCoder() { return std::make_unique<AdobeGRDCoder>(); }

}  // namespace PAL
