#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto jascCoder = coder(PaletteFormat::paintShopPro);

const std::vector<Color> harbour = {Color::rgb255(23, 42, 58), Color::rgb255(64, 112, 138), Color::rgb255(233, 196, 106),
                                    Color::rgb255(231, 111, 81)};

TEST(PaintShopProCoderTest, WritesPaintShopProsBytesAndReadsThemBack) {
    // Groups flatten, alpha is left out (Krita drops lines with a fourth value), and the count leads.
    Palette palette("Harbour", {harbour[0], harbour[1]}, {Group("Warm", {harbour[2], harbour[3].withAlpha(0.5)})});
    const std::string text = jascCoder->encode(palette);
    EXPECT_EQ(text, "JASC-PAL\r\n0100\r\n4\r\n23 42 58\r\n64 112 138\r\n233 196 106\r\n231 111 81\r\n");
    EXPECT_EQ(jascCoder->decode(text).colors, harbour);
    // An empty palette too: Paint Shop Pro refuses it, but we do not lose it.
    EXPECT_TRUE(jascCoder->decode(jascCoder->encode(Palette())).colors.empty());
}

TEST(PaintShopProCoderTest, ReadsAsepritesAlphaAndHoldsValuesToRange) {
    EXPECT_EQ(jascCoder->decode("JASC-PAL\n0100\n3\n23 42 58 255\n231 111 81 128\n0 300 -4\n").colors,
              (std::vector<Color>{harbour[0], Color::rgb255(231, 111, 81, 128), Color::rgb255(0, 255, 0)}));
}

TEST(PaintShopProCoderTest, TrustsTheColorLinesOverTheCount) {
    binarytest::LogCapture log;
    EXPECT_EQ(jascCoder->decode("JASC-PAL\r\n0100\r\n16\r\n23 42 58\r\n").colors.size(), 1u);
    EXPECT_TRUE(log.contains("PAL.Coder.PaintShopPro: The file states 16 colors but holds 1"));
    EXPECT_EQ(jascCoder->decode("JASC-PAL\r\n0100\r\n0\r\n23 42 58\r\n64 112 138\r\n").colors.size(), 2u);
    // A count far beyond the file is no allocation.
    EXPECT_EQ(jascCoder->decode("JASC-PAL\r\n0100\r\n9223372036854775807\r\n1 2 3\r\n").colors.size(), 1u);
}

TEST(PaintShopProCoderTest, RefusesABrokenHeaderCountOrColourLine) {
    for (const char* text : {"", "JASC-PAL\r\n0100\r\n", "JASC-PA\r\n0100\r\n1\r\n1 2 3\r\n", "JASC-PAL\r\n0100\r\n-1\r\n1 2 3\r\n",
                             "JASC-PAL\r\n0100\r\nmany\r\n1 2 3\r\n"})
        expectCommonError(Case::invalidFormat, [text] { jascCoder->decode(text); });
    // Once the header is ours, lines that are not colours are refused rather than read as black.
    for (const char* body : {"1 2\r\n", "1 2 3 4 5\r\n", "1 2 x\r\n", "1.5 2 3\r\n", "1,2,3\r\n"})
        expectCommonError(Case::invalidFormat, [body] { jascCoder->decode(std::string("JASC-PAL\r\n0100\r\n1\r\n") + body); });
}
