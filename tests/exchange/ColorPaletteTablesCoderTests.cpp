#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "GradientTestSupport.h"

using namespace PAL;
using namespace gradienttest;
using Case = CommonError::Case;

namespace {

Gradient decodeCPT(std::string_view text) { return decode(GradientsFormat::colorPaletteTables, text).gradients.at(0); }

}  // namespace

TEST(ColorPaletteTablesCoderTest, WritesTheNumericFormWithAlphaOverWhite) {
    binarytest::LogCapture log;
    EXPECT_EQ(encode(GradientsFormat::colorPaletteTables, gradients({ember()})),
              "# Ember\n"
              "# COLOR_MODEL = RGB\n"
              "0 51 0 0 0.5 255 140 64\n"
              "0.5 255 140 64 1 255 247 196\n"
              "B 51 0 0\n"
              "F 255 247 196\n"
              "N 128 128 128\n");
    EXPECT_TRUE(log.contains("Color Palette Tables: alpha laid over white"));
}

TEST(ColorPaletteTablesCoderTest, RoundTripsHardEdgesAsSeparateSlices) {
    const Gradient bands = gradient("Bands", {{0, "ff0000"}, {0.25, "ff0000"}, {0.25, "00ff00"}, {0.6, "0000ff"}, {1, "ffffff"}});
    const std::string text = encode(GradientsFormat::colorPaletteTables, gradients({bands}));
    EXPECT_NE(text.find("0 255 0 0 0.25 255 0 0\n0.25 0 255 0 0.6 0 0 255\n"), std::string::npos);
    const Gradient back = decodeCPT(text);
    EXPECT_EQ(back.name, "Bands");
    expectSameStops(back, bands);
}

TEST(ColorPaletteTablesCoderTest, ReadsEveryErasColourFormsOverAnyRange) {
    // GMT 4 numbers over a negative range, with annotation letters, labels, B/F/N and blank lines.
    expectStops(
        decodeCPT("# COLOR_MODEL = RGB\n-100 0 0 0 0 255 0 0 L\n\n0 255 0 0 100 255 255 255 B ;top\nB 0 0 0\nF 1 1 1\nN 9 9 9\n"),
        {{0, "000000"}, {0.5, "ff0000"}, {1, "ffffff"}});
    // GMT 5 tokens: r/g/b, a name, #rrggbb, a grey, c/m/y/k, transparency, and a band of no fill.
    expectStops(decodeCPT("0 255/0/0 1 red\n1 #00ff00 2 128\n2 0/0/0/100 3 0/100/100/0@50\n3 - 4 -\n"),
                {{0, "ff0000"},
                 {0.25, "ff0000"},
                 {0.25, "00ff00"},
                 {0.5, "808080"},
                 {0.5, "000000"},
                 {0.75, "ff0000", 0.5},
                 {0.75, "000000", 0},
                 {1, "000000", 0}},
                0.5 / 255);
    // CMYK as four numbers, and h-s-v tokens.
    expectStops(decodeCPT("0 0 100 100 0 1 100 100 0 0\n"), {{0, "ff0000"}, {1, "0000ff"}});
    expectStops(decodeCPT("0 0-1-1 1 120-1-0.5\n"), {{0, "ff0000"}, {1, "008000"}}, 1.0 / 255);
    // A table of keys is a row of equal bands.
    expectStops(decodeCPT("1 red\n2 0/0/255\n"), {{0, "ff0000"}, {0.5, "ff0000"}, {0.5, "0000ff"}, {1, "0000ff"}});
}

TEST(ColorPaletteTablesCoderTest, HSVTablesAreSampledAlongTheHue) {
    const Gradient hsv = decodeCPT("# COLOR_MODEL = +HSV\n0 0 1 1 1 240 1 1\n");
    EXPECT_GT(hsv.stops.size(), 3u);
    EXPECT_TRUE(sameRGBA(hsv.colorAt(0.5), {0, 1, 0, 1}, 2.0 / 255));  // hue 120 on the way from red to blue
}

TEST(ColorPaletteTablesCoderTest, RefusesWhatIsNotATable) {
    for (const char* text : {"", "# only a comment\n", "0 1 2\n", "0 red 1\n", "0 red 1 nocolor\n", "1 red 0 blue\n",
                             "0 red 1 blue\n2 red 1.5 blue\n", "0 red 0 blue\n", "# COLOR_MODEL = LAB\n0 red 1 blue\n",
                             "0 red 1 blue\n2 green\n", "0 1 2 3 4 5\n"})
        expectCommonError(Case::invalidFormat, [text] { decodeCPT(text); });
}
