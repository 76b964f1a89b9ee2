#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;
using namespace std::string_literals;

const auto v3Coder = coder(PaletteFormat::corelDrawV3);

namespace {

Color percentages(int c, int m, int y, int k, std::string name) { return Color::cmyk(c / 100.0, m / 100.0, y / 100.0, k / 100.0, 1, std::move(name)); }

}  // namespace

TEST(CorelDrawV3CoderTest, WritesTheColumnsOfCorelDrawsOwnPalettesAndReadsThemBack) {
    // The quoted name fills 29 columns, each percentage 4; names lose their quotes and are held to 29
    // characters; groups flatten.
    Palette palette("Harbour", {percentages(60, 28, 0, 77, "Deep Water"), percentages(54, 19, 0, 46, "Tide")},
                    {Group("Warm", {percentages(0, 16, 55, 9, "Lamplight"),
                                    percentages(100, 100, 100, 100, "A \"very\" long name, longer than 29")})});
    const std::string text = v3Coder->encode(palette);
    EXPECT_EQ(text,
              "\"Deep Water\"                   60  28   0  77\r\n"
              "\"Tide\"                         54  19   0  46\r\n"
              "\"Lamplight\"                     0  16  55   9\r\n"
              "\"A very long name, longer than\" 100 100 100 100\r\n");
    auto expected = palette.allColors();
    expected[3].name = "A very long name, longer than";
    EXPECT_EQ(v3Coder->decode(text).colors, expected);
}

TEST(CorelDrawV3CoderTest, WritesWindows1252AndConvertsOtherSpacesToCMYK) {
    binarytest::LogCapture log;
    const std::string text = v3Coder->encode(Palette("", {Color::rgb255(255, 0, 0, 255, "Rouge ✓ €"), Color::gray(1)}));
    EXPECT_TRUE(text.starts_with("\"Rouge ? \x80\"")) << text;
    EXPECT_TRUE(log.contains("PAL.Coder.CorelDrawV3: Colors that were not CMYK were converted to CMYK; the values are approximations"));
    // The layer's own conversion: what was red reads back close to red, white as white.
    const auto back = v3Coder->decode(text).colors;
    ASSERT_EQ(back.size(), 2u);
    EXPECT_EQ(back[0].name, "Rouge ? €");
    EXPECT_GT(back[0].rgb().rf, 0.85);
    EXPECT_LT(back[0].rgb().gf, 0.25);
    EXPECT_EQ(back[1].hexString(), "ffffff");
}

TEST(CorelDrawV3CoderTest, ReadsTheFilesCorelDrawShipped) {
    // Windows-1252 names, other widths, values outside 0...100, and a DOS end-of-file byte and what follows it.
    binarytest::LogCapture log;
    const Palette palette = v3Coder->decode("\"Caf\xE9 \x93noir\x94\" 1\t2 3 4\r\n\"Over\"   120 -5 0 0\r\n\"\"0 0 0 0\r\n\x1A\x00 after the end"s);
    EXPECT_EQ(palette.colors, (std::vector<Color>{percentages(1, 2, 3, 4, "Café “noir”"), percentages(100, 0, 0, 0, "Over"),
                                                  percentages(0, 0, 0, 0, "")}));
    EXPECT_TRUE(log.contains("PAL.Coder.CorelDrawV3: Percentages outside 0...100 were held at the nearest end"));
}

TEST(CorelDrawV3CoderTest, OverlongUTF8IsWindows1252AndWritesBack) {
    // C0 92 only looks like UTF-8 (an overlong U+0012): taken as UTF-8 it wrote a control byte into the name
    // that the reader then refused.
    const Palette palette = v3Coder->decode("\"B\xCC\x85\xC0\x92\x61\"1 2 3 4\r\n\x1A");
    ASSERT_EQ(palette.colors.size(), 1u);
    EXPECT_EQ(palette.colors[0].name, "BÌ…À’a");
    EXPECT_EQ(v3Coder->decode(v3Coder->encode(palette)).colors, palette.colors);
}

TEST(CorelDrawV3CoderTest, RefusesLinesThatAreNotWholeSwatches) {
    for (const std::string& text : {""s, "\r\n\x1A"s, "\"Black\" 0 0 0\r\n"s, "\"Black\" 0 0 0 100 5\r\n"s, "\"Black 0 0 0 100\r\n"s,
                                    "Black 0 0 0 100\r\n"s, "\"Black\" 0 0 x 100\r\n"s})
        expectCommonError(Case::invalidFormat, [&text] { v3Coder->decode(text); });
}
