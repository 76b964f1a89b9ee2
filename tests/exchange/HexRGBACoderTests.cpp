// Hex lists: the shapes Aseprite, GIMP and colour generators write, and the 8-digit RRGGBBAA order.
#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

Palette decodeHex(std::string_view text) { return coder(PaletteFormat::hexRGBA)->decode(text); }

}  // namespace

TEST(HexRGBACoderTest, WritesAsepritesLinesWithAlphaOnlyWhereNeeded) {
    const Palette palette("Harbour", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::cmyk(0, 0, 0, 0)},
                          {Group("Glass", {Color::rgb255(231, 111, 81, 128, "Buoy")})});
    const std::string text = coder(PaletteFormat::hexRGBA)->encode(palette);
    EXPECT_EQ(text, "172a3a\nffffff\ne76f5180\n");

    const Palette back = decodeHex(text);
    EXPECT_EQ(back.format, PaletteFormat::hexRGBA);
    ASSERT_EQ(back.colors.size(), 3u);
    EXPECT_EQ(back.colors[0], Color::rgb255(23, 42, 58));
    EXPECT_EQ(back.colors[1], Color::rgb(1, 1, 1));
    EXPECT_EQ(back.colors[2], Color::rgb255(231, 111, 81, 128));
}

TEST(HexRGBACoderTest, ReadsTheShapesInTheWild) {
    // GIMP's export: '#', no final newline. Then CR LF, upper case, short forms, "0x", several colours on
    // a line, comments, and a colour followed by its name.
    const Palette palette = decodeHex(
        "; exported\r\n"
        "// by hand\r\n"
        "# Palette: Harbour\r\n"
        "#172a3a\r\n"
        "  40708A  \r\n"
        "#e76\n"
        "#e76f5180\n"
        "0xE9C46A\n"
        "\n"
        "#ef476f, #ffd166;06d6a0\n"
        "ff0000 Signal red\n"
        "#00ff00");
    ASSERT_EQ(palette.colors.size(), 10u);
    EXPECT_EQ(palette.colors[0], Color::rgb255(0x17, 0x2a, 0x3a));
    EXPECT_EQ(palette.colors[1], Color::rgb255(0x40, 0x70, 0x8a));
    EXPECT_EQ(palette.colors[2], Color::rgb255(0xee, 0x77, 0x66));
    EXPECT_EQ(palette.colors[3], Color::rgb255(0xe7, 0x6f, 0x51, 0x80));
    EXPECT_EQ(palette.colors[4], Color::rgb255(0xe9, 0xc4, 0x6a));
    EXPECT_EQ(palette.colors[7], Color::rgb255(0x06, 0xd6, 0xa0));
    EXPECT_EQ(palette.colors[8], Color::rgb255(255, 0, 0, 255, "Signal red"));
    EXPECT_EQ(palette.colors[9], Color::rgb255(0, 255, 0));
}

TEST(HexRGBACoderTest, RefusesWhatIsNotAHexList) {
    for (const char* text : {"", "\n", "; only a comment\n", "GIMP Palette\n", "{\"colors\": []}", "ff00zz\n", "12345\n",
                             "#172a3a\nhello\n", "255 0 0\n"})
        expectCommonError(Case::invalidFormat, [text] { decodeHex(text); });
}
