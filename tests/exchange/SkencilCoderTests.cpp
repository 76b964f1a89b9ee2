#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto skencilCoder = coder(PaletteFormat::skencil);

TEST(SkencilCoderTest, WritesSkencilsLayout) {
    // "%g" values, a tab before the name, LF; every colour gets a name of its own, since Skencil drops
    // unnamed entries and repeated names.
    Palette palette("Harbour", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(64, 112, 138, 255, "Tide")},
                    {Group("Warm", {Color::rgb(1, 0.5, 0), Color::rgb255(231, 111, 81, 255, "Tide"), Color::rgb(0, 0, 1, 1, "Tide"),
                                    Color::rgb(1, 1, 1, 1, " Paper\tWhite ")})});
    EXPECT_EQ(skencilCoder->encode(palette),
              "##Sketch RGBPalette 0\n"
              "0.0901961 0.164706 0.227451\tDeep Water\n"
              "0.25098 0.439216 0.541176\tTide\n"
              "1 0.5 0\t#ff8000\n"
              "0.905882 0.435294 0.317647\tTide 2\n"
              "0 0 1\tTide 3\n"
              "1 1 1\tPaper White\n");
}

TEST(SkencilCoderTest, GivenNamesAndNumberedOnesNeverMeet) {
    const Palette palette("", {Color::rgb(0, 0, 0, 1, "Ink"), Color::rgb(0, 0, 0.1, 1, "Ink"), Color::rgb(0, 0, 0.2, 1, "Ink 2"),
                               Color::rgb(0, 0, 0.3, 1, "Ink")});
    std::vector<std::string> names;
    for (const auto& color : skencilCoder->decode(skencilCoder->encode(palette)).colors) names.push_back(color.name);
    EXPECT_EQ(names, (std::vector<std::string>{"Ink", "Ink 2", "Ink 2 2", "Ink 3"}));
}

TEST(SkencilCoderTest, ReadsWhatItWrites) {
    const std::vector<Color> colors = {Color::rgb(0.123456, 1, 0, 1, "Ünïcode name with  spaces"), Color::rgb255(0, 0, 51, 255, "#000033"),
                                       Color::rgb(0.5, 0.25, 0.0001, 1, "Small")};
    EXPECT_EQ(skencilCoder->decode(skencilCoder->encode(Palette("", colors))).colors, colors);
    EXPECT_TRUE(skencilCoder->decode(skencilCoder->encode(Palette())).colors.empty());
}

TEST(SkencilCoderTest, ReadsTheStylesSkencilShips) {
    // standard.spl ("%g" and a tab), mini.spl (six decimals), www.spl (a space before a "#rrggbb" name),
    // comments, exponents and values out of range.
    binarytest::LogCapture log;
    const Palette palette = skencilCoder->decode(
        "##Sketch RGBPalette 0\n"
        "# a comment\n"
        "0 0 0\tBlack\n"
        "1.000000 0.000000 0.000000\tRed\n"
        "0.0 0.0 0.2 #000033\n"
        "  5e-1   2.5E-1 1e0   Name  with   spaces \n"
        "1.5 -0.5 0 Out of range\n"
        "0 0 0\tBlack\n"
        "0.1 0.2 0.3\n");
    const Color black = Color::rgb(0, 0, 0, 1, "Black");
    EXPECT_EQ(palette.colors, (std::vector<Color>{black, Color::rgb(1, 0, 0, 1, "Red"), Color::rgb(0, 0, 0.2, 1, "#000033"),
                                                  Color::rgb(0.5, 0.25, 1, 1, "Name  with   spaces"),
                                                  Color::rgb(1, 0, 0, 1, "Out of range"), black, Color::rgb(0.1, 0.2, 0.3)}));
    // Skencil would drop the repeat and the nameless entry; we keep them and say so.
    EXPECT_TRUE(log.contains("PAL.Coder.Skencil: Values outside 0...1 were held at the nearest end"));
    EXPECT_TRUE(log.contains("PAL.Coder.Skencil: Colors without a name were kept; Skencil skips them"));
    EXPECT_TRUE(log.contains("PAL.Coder.Skencil: Repeated names or colors were kept; Skencil skips them"));
}

TEST(SkencilCoderTest, RefusesWhatIsNotASkencilPalette) {
    for (const char* text : {"", "##Sketch RGBPalette 1\n0 0 0 Black\n", "#Sketch RGBPalette 0\n", "0 0 0 Black\n"})
        expectCommonError(Case::invalidFormat, [text] { skencilCoder->decode(text); });
    for (const char* entry : {"0 0\n", "0 0 x Black\n", "0,5 0 0 Decimal comma\n", "nan 0 0 Not a number\n", "inf 0 0 Infinite\n"})
        expectCommonError(Case::invalidFormat, [entry] { skencilCoder->decode(std::string("##Sketch RGBPalette 0\n") + entry); });
}
