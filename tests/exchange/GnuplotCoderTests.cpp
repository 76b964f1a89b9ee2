#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "GradientTestSupport.h"

using namespace PAL;
using namespace gradienttest;
using Case = CommonError::Case;

namespace {

Gradient decodeGPF(std::string_view text) { return decode(GradientsFormat::gnuplot, text).gradients.at(0); }

}  // namespace

TEST(GnuplotCoderTest, WritesAPaletteFileWithAlphaOverWhite) {
    EXPECT_EQ(encode(GradientsFormat::gnuplot, gradients({ember()})),
              "# Ember\n"
              "0.000000 0.200000 0.000000 0.000000\n"
              "0.500000 1.000000 0.550000 0.250000\n"
              "1.000000 1.000000 0.966667 0.766667\n");
}

TEST(GnuplotCoderTest, RoundTripsNamesHardEdgesAndStopsShortOfTheEnds) {
    const Gradient g = gradient("Edge", {{0.2, "ff0000"}, {0.5, "ff0000"}, {0.5, "0000ff"}});
    const Gradient back = decodeGPF(encode(GradientsFormat::gnuplot, gradients({g})));
    EXPECT_EQ(back.name, "Edge");
    expectStops(back, {{0, "ff0000"}, {0.2, "ff0000"}, {0.5, "ff0000"}, {0.5, "0000ff"}, {1, "0000ff"}});
}

TEST(GnuplotCoderTest, ReadsDataFilesOfEveryShapeGnuplotTakes) {
    // gray r g b over any rising range, comments and blank lines.
    expectStops(decodeGPF("# Gnuplot color map\n-1 0 0 0\n\n1 1 1 1 # white\n3 1 0 0\n"),
                {{0, "000000"}, {0.5, "ffffff"}, {1, "ff0000"}});
    // r g b alone: the line number is the gray; packed colours.
    expectStops(decodeGPF("1 0 0\n0 0 1\n0 1 0\n"), {{0, "ff0000"}, {0.5, "0000ff"}, {1, "00ff00"}});
    expectStops(decodeGPF("0 0xff0000\n2 0x0000FF\n"), {{0, "ff0000"}, {1, "0000ff"}});
}

TEST(GnuplotCoderTest, ReadsADefinedPaletteCommand) {
    // gnuplot's own demo: names, repeated grays as hard edges.
    const Gradient demo = decodeGPF(
        R"(set palette model RGB defined (0 "green", 1 "dark-green", 1 "yellow", 2 "dark-yellow", 2 "red", 3 "dark-red"))");
    expectStops(
        demo, {{0, "00ff00"}, {1.0 / 3, "006400"}, {1.0 / 3, "ffff00"}, {2.0 / 3, "c8c800"}, {2.0 / 3, "ff0000"}, {1, "8b0000"}});
    expectStops(decodeGPF("set palette defined ( 0 '#330000', 0.5 1 0.55 0.25, 1 \"#FFF7C4\" )"),
                {{0, "330000"}, {0.5, "ff8c40"}, {1, "fff7c4"}}, 0.5 / 255);
    expectStops(decodeGPF("set palette model HSV defined (0 0 1 1, 1 0.5 1 1)"), {{0, "ff0000"}, {1, "00ffff"}});
}

TEST(GnuplotCoderTest, RefusesWhatGnuplotWouldNot) {
    for (const char* text :
         {"", "# nothing\n", "0 1\n", "1 0 0 0\n0 1 1 1\n", "0 x 0 0\n", "0 0 0 0 0\n",
          "set palette defined (0 \"no-such-color\", 1 \"red\")", "set palette defined (0 1 1)",
          "set palette model XYZ defined (0 1 1 1)", "set palette defined 0 1 1 1", "set palette defined (0 \"red)"})
        expectCommonError(Case::invalidFormat, [text] { decodeGPF(text); });
}
