#include "platform/ColorValue.h"

#include <algorithm>
#include <cmath>

namespace kro {
namespace {

bool sameSpace(const ColorSpace* a, const ColorSpace* b) {
    if (a == b) return true;
    return a && b && a->name() == b->name() && a->model() == b->model();
}

struct HSB {
    double hue = 0, saturation = 0, brightness = 0;
};

// The hexcone model, hue as a fraction of a turn.
HSB hexcone(double red, double green, double blue) {
    double max = std::max({red, green, blue});
    double min = std::min({red, green, blue});
    double delta = max - min;
    HSB result;
    result.brightness = max;
    result.saturation = max > 0 ? delta / max : 0;
    if (delta <= 0) return result;
    double hue;
    if (max == red) {
        hue = (green - blue) / delta;
    } else if (max == green) {
        hue = (blue - red) / delta + 2;
    } else {
        hue = (red - green) / delta + 4;
    }
    hue /= 6;
    if (hue < 0) hue += 1;
    result.hue = hue;
    return result;
}

}  // namespace

ColorValue ColorValue::rgb(double red, double green, double blue, double alpha) {
    return withComponents(ColorSpace::sRGB(), {red, green, blue}, alpha);
}

ColorValue ColorValue::hsb(double hue, double saturation, double brightness, double alpha) {
    double turn = std::isfinite(hue) ? hue - std::floor(hue) : 0;  // a hue of 1 is a hue of 0
    double sector = turn * 6;
    int index = static_cast<int>(sector) % 6;
    double fraction = sector - std::floor(sector);
    double v = brightness;
    double p = v * (1 - saturation);
    double q = v * (1 - saturation * fraction);
    double t = v * (1 - saturation * (1 - fraction));
    switch (index) {
        case 0: return rgb(v, t, p, alpha);
        case 1: return rgb(q, v, p, alpha);
        case 2: return rgb(p, v, t, alpha);
        case 3: return rgb(p, q, v, alpha);
        case 4: return rgb(t, p, v, alpha);
        default: return rgb(v, p, q, alpha);
    }
}

ColorValue ColorValue::withComponents(std::shared_ptr<const ColorSpace> space, std::vector<double> components,
                                      double alpha) {
    ColorValue color;
    color.space_ = space ? std::move(space) : ColorSpace::sRGB();
    components.resize(static_cast<size_t>(color.space_->componentCount()), 0.0);
    color.components_ = std::move(components);
    color.alpha_ = alpha;
    return color;
}

ColorValue ColorValue::nonComponent(ColorType type) {
    ColorValue color;
    color.type_ = type == ColorType::componentBased ? ColorType::pattern : type;
    return color;
}

std::optional<ColorValue> ColorValue::converted(const std::shared_ptr<const ColorSpace>& space) const {
    if (type_ != ColorType::componentBased || !space_ || !space) return std::nullopt;
    if (sameSpace(space_.get(), space.get())) return *this;
    auto components = detail::convertComponents(*space_, *space, components_);
    if (!components) return std::nullopt;
    return withComponents(space, std::move(*components), alpha_);
}

ColorValue ColorValue::usingColorSpace(const std::shared_ptr<const ColorSpace>& space) const {
    if (type_ == ColorType::componentBased && space_ && space && space_->model() == space->model()) return *this;
    return converted(space).value_or(*this);
}

std::vector<double> ColorValue::rgbComponents() const {
    if (type_ == ColorType::componentBased && space_ && space_->model() == ColorSpaceModel::rgb) return components_;
    if (auto color = converted(ColorSpace::sRGB())) return color->components_;
    return {0, 0, 0};
}

std::vector<double> ColorValue::cmykComponents() const {
    if (type_ == ColorType::componentBased && space_ && space_->model() == ColorSpaceModel::cmyk) return components_;
    if (auto color = converted(ColorSpace::genericCMYK())) return color->components_;
    return {0, 0, 0, 0};
}

double ColorValue::red() const { return rgbComponents()[0]; }
double ColorValue::green() const { return rgbComponents()[1]; }
double ColorValue::blue() const { return rgbComponents()[2]; }

double ColorValue::hue() const {
    auto c = rgbComponents();
    return hexcone(c[0], c[1], c[2]).hue;
}

double ColorValue::saturation() const {
    auto c = rgbComponents();
    return hexcone(c[0], c[1], c[2]).saturation;
}

double ColorValue::brightness() const {
    auto c = rgbComponents();
    return hexcone(c[0], c[1], c[2]).brightness;
}

double ColorValue::cyan() const { return cmykComponents()[0]; }
double ColorValue::magenta() const { return cmykComponents()[1]; }
double ColorValue::yellow() const { return cmykComponents()[2]; }
double ColorValue::black() const { return cmykComponents()[3]; }

bool ColorValue::operator==(const ColorValue& other) const {
    return type_ == other.type_ && sameSpace(space_.get(), other.space_.get()) && components_ == other.components_ &&
           alpha_ == other.alpha_;
}

}  // namespace kro
