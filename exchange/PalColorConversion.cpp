// The shared converter between the four exchange colour spaces, through the platform colour value
// (Little CMS): CMYK is the shipped generic CMYK profile, LAB is Lab D50, Gray is linear gray.
#include "exchange/PalColor.h"
#include "exchange/PalErrors.h"
#include "platform/ColorValue.h"

namespace PAL {

namespace {

using SpaceHandle = std::shared_ptr<const kro::ColorSpace>;

const SpaceHandle& platformSpace(ColorSpace space) {
    static const SpaceHandle cmyk = kro::ColorSpace::genericCMYK();
    static const SpaceHandle rgb = kro::ColorSpace::sRGB();
    static const SpaceHandle lab = kro::ColorSpace::labD50();
    static const SpaceHandle gray = kro::ColorSpace::linearGray();
    switch (space) {
    case ColorSpace::CMYK: return cmyk;
    case ColorSpace::RGB: return rgb;
    case ColorSpace::LAB: return lab;
    case ColorSpace::Gray: return gray;
    }
    return rgb;
}

}  // namespace

kro::ColorValue Color::platformColor() const {
    if (colorComponents.size() != static_cast<std::size_t>(componentCount(colorSpace)))
        throw CommonError(CommonError::Case::cannotConvertColorSpace);
    return kro::ColorValue::withComponents(platformSpace(colorSpace), colorComponents, alpha);
}

Color Color::fromPlatform(const kro::ColorValue& value, std::string name, ColorType type) {
    const auto& space = value.colorSpace();
    for (ColorSpace candidate : {ColorSpace::CMYK, ColorSpace::RGB, ColorSpace::LAB, ColorSpace::Gray}) {
        if (space && space->name() == platformSpace(candidate)->name())
            return Color(candidate, value.components(), value.alpha(), std::move(name), type);
    }
    const auto matched = value.converted(platformSpace(ColorSpace::RGB));
    if (!matched) throw CommonError(CommonError::Case::unsupportedCGColorType);
    return Color(ColorSpace::RGB, matched->components(), matched->alpha(), std::move(name), type);
}

Color PlatformColorSpaceConversion::convert(const Color& color, ColorSpace to) const {
    if (color.colorSpace == to) return color;
    const auto converted = color.platformColor().converted(platformSpace(to));
    if (!converted) throw CommonError(CommonError::Case::cannotConvertColorSpace);
    return Color::fromPlatform(*converted, color.name, color.colorType);
}

const ColorSpaceConvertible& sharedConverter() {
    static const PlatformColorSpaceConversion converter;
    return converter;
}

}  // namespace PAL
