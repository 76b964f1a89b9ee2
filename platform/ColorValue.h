#pragma once
// The platform colour value: a colour in a colour space (a model, components, alpha), with conversions
// between spaces done by Little CMS. Values are immutable and cheap to copy.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kro {

enum class ColorSpaceModel { rgb, cmyk, gray, lab };

// An ICC-backed colour space. Shared, immutable, safe to use from any thread.
class ColorSpace {
public:
    virtual ~ColorSpace() = default;
    virtual ColorSpaceModel model() const = 0;
    virtual const std::string& name() const = 0;
    // Number of colour components, alpha not counted (3 for RGB and Lab, 4 for CMYK, 1 for gray).
    virtual int componentCount() const = 0;

    static std::shared_ptr<const ColorSpace> sRGB();
    static std::shared_ptr<const ColorSpace> displayP3();
    static std::shared_ptr<const ColorSpace> adobeRGB1998();
    // "Generic RGB": gamma 1.8, D65 white point and the Apple RGB primaries, as the classic platform profile.
    static std::shared_ptr<const ColorSpace> genericRGB();
    // The shipped CMYK ICC profile (resources/GenericCMYK.icc).
    static std::shared_ptr<const ColorSpace> genericCMYK();
    // Gray with gamma 2.2 and a D65 white point.
    static std::shared_ptr<const ColorSpace> genericGray();
    // Gray with a linear response (gamma 1.0) and a D65 white point.
    static std::shared_ptr<const ColorSpace> linearGray();
    // CIE Lab with a D50 white point; components L 0…100, a and b about −128…127.
    static std::shared_ptr<const ColorSpace> labD50();
    // A space from an ICC profile's bytes (the display's own profile); nothing when the profile does not load,
    // is not an RGB, CMYK, gray or Lab profile, or cannot convert colours.
    static std::shared_ptr<const ColorSpace> fromICCProfile(std::string_view bytes, const std::string& name);
};

namespace detail {
// The components of a colour of `from` in `to` (each clamped to its range), or nothing when no transform
// between the two spaces can be made. Transforms are made once per pair of spaces and shared by all threads.
std::optional<std::vector<double>> convertComponents(const ColorSpace& from, const ColorSpace& to,
                                                     const std::vector<double>& components);
}  // namespace detail

enum class ColorType { componentBased, pattern, catalog };

class ColorValue {
public:
    // colorWithRed:green:blue:alpha: — components in sRGB.
    static ColorValue rgb(double red, double green, double blue, double alpha = 1.0);
    // colorWithHue:saturation:brightness:alpha: — hexcone HSB, each 0…1, in sRGB.
    static ColorValue hsb(double hue, double saturation, double brightness, double alpha = 1.0);
    // colorWithColorSpace:components:count: — `components` holds the space's components (alpha separate);
    // missing ones read as 0 and extra ones are dropped. A null space means sRGB.
    static ColorValue withComponents(std::shared_ptr<const ColorSpace> space, std::vector<double> components, double alpha = 1.0);
    // A colour that is not component-based (a pattern or catalog colour; `componentBased` gives a pattern):
    // it converts to nothing.
    static ColorValue nonComponent(ColorType type);

    ColorType type() const { return type_; }
    // Null for a colour that is not component-based.
    const std::shared_ptr<const ColorSpace>& colorSpace() const { return space_; }
    const std::vector<double>& components() const { return components_; }

    // colorUsingColorSpace: — the colour in `space` (clamped to its gamut by the transform), or nothing.
    std::optional<ColorValue> converted(const std::shared_ptr<const ColorSpace>& space) const;
    // The colour unchanged when it is component-based and its model already matches the space's model;
    // otherwise the conversion, and the colour unchanged when that fails.
    ColorValue usingColorSpace(const std::shared_ptr<const ColorSpace>& space) const;

    // Components. The RGB accessors read an RGB colour as it stands and convert any other to sRGB first;
    // the CMYK accessors likewise with generic CMYK. A colour that converts to nothing reads as 0.
    double red() const;
    double green() const;
    double blue() const;
    double alpha() const { return alpha_; }
    // Hexcone hue (fraction of a turn), saturation and brightness of the RGB components, each 0…1.
    double hue() const;
    double saturation() const;
    double brightness() const;
    double cyan() const;
    double magenta() const;
    double yellow() const;
    double black() const;

    // Same type, same space (by identity or name) and the same components and alpha.
    bool operator==(const ColorValue& other) const;

private:
    ColorValue() = default;
    std::vector<double> rgbComponents() const;
    std::vector<double> cmykComponents() const;

    ColorType type_ = ColorType::componentBased;
    std::shared_ptr<const ColorSpace> space_;
    std::vector<double> components_;
    double alpha_ = 1.0;
};

}  // namespace kro
