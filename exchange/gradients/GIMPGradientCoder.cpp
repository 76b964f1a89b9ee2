// GIMP gradients (.ggr): one gradient of segments, each with its own blending curve and colouring.
// Reading checks what GIMP checks (segments in order, spanning 0 to 1) but forgives the small drift
// of files written with six decimals, and turns each segment into stops: exactly for straight and step
// segments, by sampling for curves and HSV ramps. Writing makes one straight RGB segment per pair of
// stops, in the form GIMP, Krita and Inkscape all accept.
#include <cmath>
#include <numbers>

#include "exchange/PalErrors.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/gradients/GradientCoders.h"
#include "exchange/gradients/GradientSampling.h"

namespace PAL {

namespace {

using textfile::requiredNumber;
using textfile::shortest;
using textfile::trimmed;

constexpr std::string_view magic = "GIMP Gradient";
constexpr std::string_view untitled = "Untitled";
// Ends closer than this to where they belong are moved there, as if written with more digits.
constexpr double snapDistance = 1e-9;

enum class Blending { linear, curved, sinusoidal, sphericalIncreasing, sphericalDecreasing, step };
enum class Coloring { rgb, hsvCounterClockwise, hsvClockwise };

struct Segment {
    double left = 0, middle = 0, right = 0;
    RGB leftColor, rightColor;
    Blending blending = Blending::linear;
    Coloring coloring = Coloring::rgb;
};

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

int smallInteger(std::string_view token, int largest) {
    const auto value = textfile::integer(token);
    if (!value || *value < 0 || *value > largest) throw invalidFormat();
    return static_cast<int>(*value);
}

// Foreground and background endpoints take the colour stored with them (the one the editor last
// showed); the "transparent" kinds (2 and 4) take it with no alpha.
RGB endpointColor(const std::vector<std::string_view>& fields, std::size_t first, int endpointType) {
    RGB color{std::clamp(requiredNumber(fields[first]), 0.0, 1.0), std::clamp(requiredNumber(fields[first + 1]), 0.0, 1.0),
              std::clamp(requiredNumber(fields[first + 2]), 0.0, 1.0), std::clamp(requiredNumber(fields[first + 3]), 0.0, 1.0)};
    if (endpointType == 2 || endpointType == 4) color.af = 0;
    return color;
}

Segment segmentLine(std::string_view line) {
    const auto fields = textfile::words(line);
    if (fields.size() != 13 && fields.size() != 15) throw invalidFormat();
    const int leftType = fields.size() == 15 ? smallInteger(fields[13], 4) : 0;
    const int rightType = fields.size() == 15 ? smallInteger(fields[14], 4) : 0;
    Segment segment;
    segment.left = requiredNumber(fields[0]);
    segment.middle = requiredNumber(fields[1]);
    segment.right = requiredNumber(fields[2]);
    segment.leftColor = endpointColor(fields, 3, leftType);
    segment.rightColor = endpointColor(fields, 7, rightType);
    segment.blending = static_cast<Blending>(smallInteger(fields[11], 5));
    segment.coloring = static_cast<Coloring>(smallInteger(fields[12], 2));
    if (!(segment.left <= segment.middle && segment.middle <= segment.right)) throw invalidFormat();
    return segment;
}

// Where the segments must meet, they meet exactly; a gap or overlap beyond rounding is refused.
void snap(double& value, double target) {
    if (std::fabs(value - target) >= snapDistance) throw invalidFormat();
    value = target;
}

double linearFactor(double p, double h) {
    if (p <= h) return h < 1e-10 ? 0 : 0.5 * p / h;
    return 1 - h < 1e-10 ? 1 : 0.5 + 0.5 * (p - h) / (1 - h);
}

// The blend factor at fraction p of a segment whose middle is at fraction h.
double blendFactor(Blending blending, double p, double h) {
    switch (blending) {
    case Blending::linear: return linearFactor(p, h);
    case Blending::curved:
        if (h < 1e-10) return 1;
        if (1 - h < 1e-10) return 0;
        return std::pow(p, std::log(0.5) / std::log(h));
    case Blending::sinusoidal: return (std::sin(-std::numbers::pi / 2 + std::numbers::pi * linearFactor(p, h)) + 1) / 2;
    case Blending::sphericalIncreasing: {
        const double l = linearFactor(p, h) - 1;
        return std::sqrt(std::max(0.0, 1 - l * l));
    }
    case Blending::sphericalDecreasing: {
        const double l = linearFactor(p, h);
        return 1 - std::sqrt(std::max(0.0, 1 - l * l));
    }
    case Blending::step: return p >= h ? 1 : 0;
    }
    return p;
}

// GIMP's own conversion: a colour this close to grey has hue and saturation 0.
HSB gimpHSV(const RGB& rgb) {
    HSB hsv = rgbToHSB(rgb);
    if (std::max({rgb.rf, rgb.gf, rgb.bf}) - std::min({rgb.rf, rgb.gf, rgb.bf}) <= 0.0001) hsv.hf = hsv.sf = 0;
    return hsv;
}

// Equal hues at both ends make a whole turn of the hue circle, as GIMP draws them.
double hueAt(Coloring coloring, double left, double right, double f) {
    if (coloring == Coloring::hsvCounterClockwise) {
        double hue = left < right ? left + (right - left) * f : left + (1 - (left - right)) * f;
        return hue > 1 ? hue - 1 : hue;
    }
    double hue = right < left ? left - (left - right) * f : left - (1 - (right - left)) * f;
    return hue < 0 ? hue + 1 : hue;
}

RGB segmentColor(const Segment& segment, double p) {
    const double width = segment.right - segment.left;
    const double h = width < 1e-10 ? 0.5 : (segment.middle - segment.left) / width;
    const double f = blendFactor(segment.blending, width < 1e-10 ? 0.5 : p, h);
    if (segment.coloring == Coloring::rgb) return mixed(segment.leftColor, segment.rightColor, f);
    const HSB left = gimpHSV(segment.leftColor), right = gimpHSV(segment.rightColor);
    RGB rgb = hsbToRGB({hueAt(segment.coloring, left.hf, right.hf, f), left.sf + (right.sf - left.sf) * f,
                        left.bf + (right.bf - left.bf) * f, 1});
    rgb.af = segment.leftColor.af + (segment.rightColor.af - segment.leftColor.af) * f;
    return rgb;
}

void addSegment(StopList& stops, const Segment& segment) {
    const double l = segment.left, m = segment.middle, r = segment.right;
    const bool straight = segment.coloring == Coloring::rgb && (segment.blending == Blending::linear || r - l < 1e-10);
    if (straight) {
        stops.add(l, segment.leftColor);
        if (std::fabs(m - (l + r) / 2) > 1e-6 && r - l >= 1e-10) stops.add(m, mixed(segment.leftColor, segment.rightColor, 0.5));
        stops.add(r, segment.rightColor);
    } else if (segment.coloring == Coloring::rgb && segment.blending == Blending::step) {
        stops.add(l, segment.leftColor);
        stops.add(m, segment.leftColor);
        stops.add(m, segment.rightColor);
        stops.add(r, segment.rightColor);
    } else {
        stops.addSampled(l, r, [&segment](double p) { return segmentColor(segment, p); });
    }
}

std::string segmentText(double left, double right, const RGB& leftColor, const RGB& rightColor) {
    std::string line;
    const auto field = [&line](double value) {
        if (!line.empty()) line += ' ';
        line += shortest(std::clamp(value, 0.0, 1.0));
    };
    for (double value : {left, (left + right) / 2, right, leftColor.rf, leftColor.gf, leftColor.bf, leftColor.af, rightColor.rf,
                         rightColor.gf, rightColor.bf, rightColor.af})
        field(value);
    return line + " 0 0 0 0\n";  // linear, RGB, both endpoints fixed colours
}

class GIMPGradientCoder final : public GradientsCoder {
public:
    GIMPGradientCoder() : GradientsCoder(GradientsFormat::gimp) {}
    using GradientsCoder::decode;

    Gradients decode(BytesParser::BytesReader& reader) const override {
        const std::string content = textfile::readText(reader);
        const auto lines = textfile::splitLines(content);
        if (lines.empty() || !lines.front().starts_with(magic)) throw invalidFormat();

        Gradient gradient;
        std::size_t next = 1;
        // Files older than GIMP 2.2 have no name line: the count follows the magic.
        if (next < lines.size() && lines[next].starts_with("Name:")) {
            const auto name = trimmed(lines[next].substr(5));
            if (name != untitled) gradient.name = std::string(name);
            ++next;
        }
        if (next >= lines.size()) throw invalidFormat();
        const auto count = textfile::integer(trimmed(lines[next++]));
        if (!count || *count < 1 || static_cast<std::size_t>(*count) > lines.size() - next) throw invalidFormat();

        StopList stops;
        double previousRight = 0;
        for (long long i = 0; i < *count; ++i) {
            Segment segment = segmentLine(lines[next + static_cast<std::size_t>(i)]);
            snap(segment.left, previousRight);
            if (i + 1 == *count) snap(segment.right, 1);
            segment.middle = std::clamp(segment.middle, segment.left, segment.right);
            addSegment(stops, segment);
            previousRight = segment.right;
        }
        gradient.stops = stops.take();
        return singleGradient(GradientsFormat::gimp, std::move(gradient));
    }

    std::string encode(const Gradients& gradients) const override {
        const Gradient& gradient = onlyGradient(gradients);
        const auto stops = spanningStops(gradient);
        std::string segments;
        std::size_t count = 0;
        for (std::size_t i = 0; i + 1 < stops.size(); ++i) {
            // Two stops at one position are a hard edge: no segment between them, the segments on
            // either side simply end and start with different colours.
            if (stops[i].position == stops[i + 1].position) continue;
            segments += segmentText(stops[i].position, stops[i + 1].position, stops[i].color.rgb(), stops[i + 1].color.rgb());
            ++count;
        }
        const std::string name = textfile::singleLine(trimmed(gradient.name));
        return std::string(magic) + "\nName: " + (name.empty() ? std::string(untitled) : name) + "\n" + std::to_string(count) +
               "\n" + segments;
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeGIMPGradientCoder() { return std::make_unique<GIMPGradientCoder>(); }

}  // namespace PAL
