// RGB text, RGBA text and the 0...255 RGB text: what each writes, how they tell integer lists from
// decimal ones, and how a .txt file finds the right one of them.
#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"
#include "exchange/coders/Coders.h"

using namespace PAL;
using Case = CommonError::Case;

const auto rgbCoder = coder(PaletteFormat::rgb);
const auto rgbaCoder = coder(PaletteFormat::rgba);
const auto rgb255Coder = makeRGB255Coder();

const Palette harbour("Harbour Dusk", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb(1, 0, 0.5),
                                       Color::rgb255(231, 111, 81, 128, "Buoy  (half)")},
                      {Group("Paper", {Color::gray(1, 1, "White")})});

TEST(RGBTextCoderTest, WritesEachConventionAndReadsItBack) {
    const std::string rgb = rgbCoder->encode(harbour), rgba = rgbaCoder->encode(harbour), bytes = rgb255Coder->encode(harbour);
    EXPECT_EQ(rgb,
              "0.090196 0.164706 0.227451\tDeep Water\n"
              "1.0 0.0 0.5\n"
              "0.905882 0.435294 0.317647\tBuoy  (half)\n"
              "1.0 1.0 1.0\tWhite\n");
    EXPECT_EQ(rgba,
              "0.090196 0.164706 0.227451 1.0\tDeep Water\n"
              "1.0 0.0 0.5 1.0\n"
              "0.905882 0.435294 0.317647 0.501961\tBuoy  (half)\n"
              "1.0 1.0 1.0 1.0\tWhite\n");
    EXPECT_EQ(bytes,
              " 23  42  58\tDeep Water\n"
              "255   0 128\n"
              "231 111  81\tBuoy  (half)\n"
              "255 255 255\tWhite\n");

    std::vector<Color> inRGB, opaque;
    for (const auto& color : harbour.allColors()) {
        inRGB.push_back(color.converted(ColorSpace::RGB));
        opaque.push_back(inRGB.back().withAlpha(1));
    }
    EXPECT_EQ(rgbCoder->decode(rgb).colors, opaque);
    EXPECT_EQ(rgbaCoder->decode(rgba).colors, inRGB);
    EXPECT_EQ(rgb255Coder->decode(bytes).format, PaletteFormat::rgb);
    EXPECT_EQ(rgb255Coder->decode(bytes).colors,
              (std::vector<Color>{Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(255, 0, 128),
                                  Color::rgb255(231, 111, 81, 255, "Buoy  (half)"), Color::rgb(1, 1, 1, 1, "White")}));
}

TEST(RGBTextCoderTest, IntegerListsAreBytesAndAnyDecimalMakesTheFileUnit) {
    // X11's layout: tabs inside the number columns, a blank before the tabs, unpadded rows, '!' comments.
    const Palette x11 = rgbCoder->decode("! rgb.txt\n139 121\t 94\t\tNavajoWhite4\n  0     0 139\t\tDark  Blue\n051 300 -4\n");
    // The last row is decimal, never octal, and held to range.
    EXPECT_EQ(x11.colors, (std::vector<Color>{Color::rgb255(139, 121, 94, 255, "NavajoWhite4"), Color::rgb255(0, 0, 139, 255, "Dark  Blue"),
                                              Color::rgb255(51, 255, 0)}));

    // "1 0 0" alone is almost black; one decimal anywhere makes every line 0...1.
    EXPECT_EQ(rgbCoder->decode("1 0 0\n").colors.at(0), Color::rgb255(1, 0, 0));
    EXPECT_EQ(rgbCoder->decode("1 0 0\n0.5 0.5 5e-1\n").colors, (std::vector<Color>{Color::rgb(1, 0, 0), Color::rgb(0.5, 0.5, 0.5)}));
    EXPECT_EQ(rgbaCoder->decode("255 0 0 128 Half\n").colors.at(0), Color::rgb255(255, 0, 0, 128, "Half"));
    EXPECT_EQ(rgbaCoder->decode("1 0 0 0.5\n").colors.at(0), Color::rgb(1, 0, 0, 0.5));

    // The 0...255 coder keeps its scale even for decimals.
    EXPECT_EQ(rgb255Coder->decode("127.5 0 255\n").colors.at(0), Color::rgb(0.5, 0, 1));
}

TEST(RGBTextCoderTest, RGBAndRGBATextRefuseEachOthersFiles) {
    const char* rgbaFile = "231 111 81 128 Buoy\n0 0 0 0\n";
    const char* rgbFile = "23 42 58 Deep Water\n64 112 138\n";
    expectCommonError(Case::invalidFormat, [&] { rgbCoder->decode(rgbaFile); });
    expectCommonError(Case::invalidFormat, [&] { rgb255Coder->decode(rgbaFile); });
    expectCommonError(Case::invalidFormat, [&] { rgbaCoder->decode(rgbFile); });
    // A fourth number on only some lines is the start of a name.
    const Palette named = rgbCoder->decode("255 0 0 50 Shades\n0 0 255 Blue\n");
    EXPECT_EQ(named.colors.at(0).name, "50 Shades");

    for (const char* text : {"", "! only a comment\n", "12 34\n", "0x1F 0 0\n", "1,2,3\n", "1 2 3\nnot a color\n"}) {
        expectCommonError(Case::invalidFormat, [&] { rgbCoder->decode(text); });
        expectCommonError(Case::invalidFormat, [&] { rgbaCoder->decode(text); });
    }
}

TEST(RGBTextCoderTest, The255ScaleHasItsOwnExtensionAndType) {
    EXPECT_EQ(decode("255 255 255 White\n", "rgb255").colors.at(0), Color::rgb(1, 1, 1, 1, "White"));
    const PaletteCoder* bytes = coderForUTType("public.tintlab.colorpalette.palette.rgb255");
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes->encode(Palette("", {Color::rgb(1, 0, 0)})), "255   0   0\n");
    EXPECT_EQ(coderForUTType("public.tintlab.colorpalette.palette.rgb")->name(), "RGB text");
}

TEST(RGBTextCoderTest, ReadsX11ColourNames) {
    const std::string text = realFile("x11-common/rgb.txt");
    const Palette x11 = decode(text, "txt");
    EXPECT_EQ(x11.format, PaletteFormat::rgb);
    ASSERT_EQ(x11.colors.size(), 753u);
    EXPECT_EQ(x11.colors[1], Color::rgb255(248, 248, 255, 255, "ghost white"));
    EXPECT_EQ(x11.colors.back(), Color::rgb255(144, 238, 144, 255, "LightGreen"));

    EXPECT_EQ(rgbCoder->decode(rgbCoder->encode(x11)).colors, x11.colors);
    EXPECT_EQ(rgb255Coder->decode(rgb255Coder->encode(x11)).colors, x11.colors);
}
