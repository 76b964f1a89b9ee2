#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto painterCoder = coder(PaletteFormat::corelPainter);

TEST(CorelPainterCoderTest, WritesTheShapeOfPaintersColorSetsAndReadsItBack) {
    const Palette palette("Harbour", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(64, 112, 138, 255, "Tide")},
                          {Group("Warm", {Color::rgb255(233, 196, 106, 255, "Lamplight"), Color::rgb255(231, 111, 81, 255, "Buoy")})});
    const std::string text = painterCoder->encode(palette);
    EXPECT_EQ(text,
              "ROWS 1\r\nCOLS 4\r\nWIDTH 16\r\nHEIGHT 16\r\nTEXTHEIGHT 0\r\nSPACING 1\r\n"
              "R: 023, G:042, B:058 HV:0.00, SV:0.00, VV:0.00 Deep Water\r\n"
              "R: 064, G:112, B:138 HV:0.00, SV:0.00, VV:0.00 Tide\r\n"
              "R: 233, G:196, B:106 HV:0.00, SV:0.00, VV:0.00 Lamplight\r\n"
              "R: 231, G:111, B:081 HV:0.00, SV:0.00, VV:0.00 Buoy\r\n");
    EXPECT_EQ(painterCoder->decode(text).colors, palette.allColors());
    EXPECT_TRUE(painterCoder->decode(painterCoder->encode(Palette())).colors.empty());

    // Sixteen to a row; a swatch without a name still ends in the space where the name would go.
    std::vector<Color> many(17, Color::rgb255(1, 2, 3));
    many[0].name = "Ünïcode, with: colons";
    const std::string manyText = painterCoder->encode(Palette("", many));
    EXPECT_TRUE(manyText.starts_with("ROWS 2\r\nCOLS 16\r\n"));
    EXPECT_TRUE(manyText.ends_with("\r\nR: 001, G:002, B:003 HV:0.00, SV:0.00, VV:0.00 \r\n"));
    EXPECT_EQ(painterCoder->decode(manyText).colors, many);
}

TEST(CorelPainterCoderTest, ReadsLeniently) {
    // Keywords in another order and case, other spacing, filled HSV fields, none at all, a value out of range.
    const Palette loose = painterCoder->decode(
        "rows\t1\ncols 3\nSpacing 0\nwidth 8\n"
        "r:1 ,g: 2,b:3 hv: 120.50, sv:1.00 ,vv:0.25   Named  swatch \n"
        "R: 4, G: 5, B: 6 No fields\n"
        "  R: 300, G:0, B:0\n");
    EXPECT_EQ(loose.colors, (std::vector<Color>{Color::rgb255(1, 2, 3, 255, "Named  swatch"), Color::rgb255(4, 5, 6, 255, "No fields"),
                                                Color::rgb255(255, 0, 0)}));
}

TEST(CorelPainterCoderTest, RefusesWhatIsNotAPainterColorSet) {
    for (const char* text : {"", "ROWS\nCOLS 1\n", "ROWS x\n", "ROWSY 1\n", "COLS 1\nROWS 1\n"})
        expectCommonError(Case::invalidFormat, [text] { painterCoder->decode(text); });
    // Swatch lines that are not whole are refused rather than read as black.
    for (const char* swatch : {"R: 1, G:2\n", "R: 1 G:2 B:3\n", "R: 1.5, G:2, B:3\n", "G:1, R:2, B:3\n",
                               "R: 1, G:2, B:3 HV:0.00, SV:0.00\n", "R: 1, G:2, B:3\nWIDTH 16\n"})
        expectCommonError(Case::invalidFormat, [swatch] { painterCoder->decode(std::string("ROWS 1\nCOLS 1\n") + swatch); });
}
