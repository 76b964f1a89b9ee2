// The writers of code: CSS, Swift for Core Graphics, SwiftUI.
#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "GradientTestSupport.h"

using namespace PAL;
using namespace gradienttest;
using Case = CommonError::Case;

TEST(CSSGradientCoderTest, WritesOneClassPerGradientWithEveryStopPlaced) {
    EXPECT_EQ(encode(GradientsFormat::css,
                     gradients({ember(), gradient("3 bars */ Ember", {{0.3333333, "000000", 0.12345}, {0.3333333, "ffffff"}}),
                                gradient("", {{0.5, "0000ff"}})})),
              "/* Ember */\n"
              ".ember {\n"
              "  background: linear-gradient(90deg, rgba(51, 0, 0, 1) 0%, rgba(255, 102, 0, 0.75) 50%, rgba(255, 238, 136, 0.5) "
              "100%);\n"
              "}\n"
              "\n"
              "/* 3 bars * / Ember */\n"
              ".gradient-3-bars-ember {\n"
              "  background: linear-gradient(90deg, rgba(0, 0, 0, 0.123) 0%, rgba(0, 0, 0, 0.123) 33.333%, rgba(255, 255, 255, "
              "1) 33.333%, "
              "rgba(255, 255, 255, 1) 100%);\n"
              "}\n"
              "\n"
              ".gradient {\n"
              "  background: linear-gradient(90deg, rgba(0, 0, 255, 1) 0%, rgba(0, 0, 255, 1) 50%, rgba(0, 0, 255, 1) 100%);\n"
              "}\n");
}

TEST(SwiftUIGradientCoderTest, WritesAGradientExtension) {
    EXPECT_EQ(encode(GradientsFormat::swiftUIGen, gradients({ember(), gradient("default", {{0, "000000"}})})),
              "import SwiftUI\n"
              "\n"
              "extension Gradient {\n"
              "    /// Ember\n"
              "    static let ember = Gradient(stops: [\n"
              "        .init(color: Color(.sRGB, red: 0.2, green: 0.0, blue: 0.0, opacity: 1.0), location: 0.0),\n"
              "        .init(color: Color(.sRGB, red: 1.0, green: 0.4, blue: 0.0, opacity: 0.75), location: 0.5),\n"
              "        .init(color: Color(.sRGB, red: 1.0, green: 0.933333, blue: 0.533333, opacity: 0.5), location: 1.0),\n"
              "    ])\n"
              "\n"
              "    /// default\n"
              "    static let `default` = Gradient(stops: [\n"
              "        .init(color: Color(.sRGB, red: 0.0, green: 0.0, blue: 0.0, opacity: 1.0), location: 0.0),\n"
              "    ])\n"
              "}\n");
}

TEST(SwiftGradientCoderTest, WritesCoreGraphicsGradientsWithUniqueNames) {
    EXPECT_EQ(encode(GradientsFormat::swiftGen, gradients({ember(), gradient("EMBER", {{0, "ffffff"}, {1, "000000"}}),
                                                           gradient("2nd GPS glow", {{0, "000000"}})})),
              "import CoreGraphics\n"
              "\n"
              "/// Ember\n"
              "let emberGradient: CGGradient? = CGGradient(\n"
              "    colorsSpace: CGColorSpace(name: CGColorSpace.sRGB),\n"
              "    colors: [\n"
              "        CGColor(srgbRed: 0.2, green: 0.0, blue: 0.0, alpha: 1.0),\n"
              "        CGColor(srgbRed: 1.0, green: 0.4, blue: 0.0, alpha: 0.75),\n"
              "        CGColor(srgbRed: 1.0, green: 0.933333, blue: 0.533333, alpha: 0.5),\n"
              "    ] as CFArray,\n"
              "    locations: [0.0, 0.5, 1.0])\n"
              "\n"
              "/// EMBER\n"
              "let emberGradient2: CGGradient? = CGGradient(\n"
              "    colorsSpace: CGColorSpace(name: CGColorSpace.sRGB),\n"
              "    colors: [\n"
              "        CGColor(srgbRed: 1.0, green: 1.0, blue: 1.0, alpha: 1.0),\n"
              "        CGColor(srgbRed: 0.0, green: 0.0, blue: 0.0, alpha: 1.0),\n"
              "    ] as CFArray,\n"
              "    locations: [0.0, 1.0])\n"
              "\n"
              "/// 2nd GPS glow\n"
              "let _2ndGPSGlowGradient: CGGradient? = CGGradient(\n"
              "    colorsSpace: CGColorSpace(name: CGColorSpace.sRGB),\n"
              "    colors: [\n"
              "        CGColor(srgbRed: 0.0, green: 0.0, blue: 0.0, alpha: 1.0),\n"
              "    ] as CFArray,\n"
              "    locations: [0.0])\n");
    expectCommonError(Case::notEnoughColorsToGenerateGradient,
                      [] { encode(GradientsFormat::swiftGen, gradients({gradient("", {})})); });
}
