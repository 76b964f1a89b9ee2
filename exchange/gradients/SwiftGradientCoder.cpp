// Swift code for Core Graphics (.swift), written only: one CGGradient constant per gradient, its
// colours CGColor values in sRGB with their alpha and its locations the stop positions.
#include "exchange/gradients/GradientCoders.h"
#include "exchange/gradients/SwiftCodeText.h"

namespace PAL {

namespace {

using swiftcode::number;

class SwiftGradientCoder final : public GradientsCoder {
public:
    SwiftGradientCoder() : GradientsCoder(GradientsFormat::swiftGen) {}

    std::string encode(const Gradients& gradients) const override {
        std::string out = "import CoreGraphics\n";
        std::set<std::string> taken;
        for (const auto& gradient : writableGradients(gradients)) {
            std::string colors, locations;
            for (const auto& stop : writableStops(gradient)) {
                const RGB c = stop.color.rgb();
                colors += "        CGColor(srgbRed: " + number(c.rf) + ", green: " + number(c.gf) + ", blue: " + number(c.bf) +
                          ", alpha: " + number(c.af) + "),\n";
                locations += (locations.empty() ? "" : ", ") + number(stop.position);
            }
            out += "\n" + swiftcode::docComment(gradient.name, "") + "let " +
                   swiftcode::identifier(gradient.name, "Gradient", taken) +
                   ": CGGradient? = CGGradient(\n    colorsSpace: CGColorSpace(name: CGColorSpace.sRGB),\n    colors: [\n" +
                   colors + "    ] as CFArray,\n    locations: [" + locations + "])\n";
        }
        return out;
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeSwiftGradientCoder() { return std::make_unique<SwiftGradientCoder>(); }

}  // namespace PAL
