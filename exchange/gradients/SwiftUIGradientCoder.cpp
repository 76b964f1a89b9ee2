// SwiftUI code (.swift), written only: an extension of Gradient with one static gradient per
// gradient, each stop a Color in the sRGB space with its opacity and its location.
#include "exchange/gradients/GradientCoders.h"
#include "exchange/gradients/SwiftCodeText.h"

namespace PAL {

namespace {

using swiftcode::number;

class SwiftUIGradientCoder final : public GradientsCoder {
public:
    SwiftUIGradientCoder() : GradientsCoder(GradientsFormat::swiftUIGen) {}

    std::string encode(const Gradients& gradients) const override {
        std::string body;
        std::set<std::string> taken;
        for (const auto& gradient : writableGradients(gradients)) {
            if (!body.empty()) body += "\n";
            body += swiftcode::docComment(gradient.name, "    ");
            body += "    static let " + swiftcode::identifier(gradient.name, "", taken) + " = Gradient(stops: [\n";
            for (const auto& stop : writableStops(gradient)) {
                const RGB c = stop.color.rgb();
                body += "        .init(color: Color(.sRGB, red: " + number(c.rf) + ", green: " + number(c.gf) +
                        ", blue: " + number(c.bf) + ", opacity: " + number(c.af) + "), location: " + number(stop.position) +
                        "),\n";
            }
            body += "    ])\n";
        }
        return "import SwiftUI\n\nextension Gradient {\n" + body + "}\n";
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeSwiftUIGradientCoder() { return std::make_unique<SwiftUIGradientCoder>(); }

}  // namespace PAL
