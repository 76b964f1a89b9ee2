#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto homeSiteCoder = coder(PaletteFormat::hpl);

TEST(HomeSiteCoderTest, WritesHomeSitesLayoutAndReadsItBack) {
    Palette palette("Harbour", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(64, 112, 138)},
                    {Group("Warm", {Color::rgb255(233, 196, 106), Color::rgb255(231, 111, 81, 128)})});
    const std::string text = homeSiteCoder->encode(palette);
    EXPECT_EQ(text, "Palette\r\nVersion 4.0\r\n-----------\r\n23 42 58\r\n64 112 138\r\n233 196 106\r\n231 111 81\r\n");
    // Names and alpha have no place in the file.
    EXPECT_EQ(homeSiteCoder->decode(text).colors, (std::vector<Color>{Color::rgb255(23, 42, 58), Color::rgb255(64, 112, 138),
                                                                   Color::rgb255(233, 196, 106), Color::rgb255(231, 111, 81)}));
    EXPECT_TRUE(homeSiteCoder->decode(homeSiteCoder->encode(Palette())).colors.empty());
}

TEST(HomeSiteCoderTest, ReadsBothVersionsAndTheirSeparators) {
    // Version 3.0 with twelve dashes; version 4.0 with an empty third line, and a value out of range.
    EXPECT_EQ(homeSiteCoder->decode("Palette\nVersion 3.0\n------------\n0 0 0\n128 0 0\n").colors.size(), 2u);
    EXPECT_EQ(homeSiteCoder->decode("Palette\r\nVersion 4.0\r\n\r\n300 255 255\r\n").colors, (std::vector<Color>{Color::rgb(1, 1, 1)}));
}

TEST(HomeSiteCoderTest, RefusesWhatIsNotAHomeSitePalette) {
    // Arc System Works' binary .hpl, a missing or malformed version, lines that are not colours.
    for (const char* text : {"", "HPAL\x25\x01\x01\x01", "Palette\n", "Palette\nVersion x\n", "Palette\nRevision 4.0\n",
                             "Palette\nVersion 4.0\n---\n1 2\n", "Palette\nVersion 4.0\n---\n1 2 3 name\n"})
        expectCommonError(Case::invalidFormat, [text] { homeSiteCoder->decode(text); });
}
