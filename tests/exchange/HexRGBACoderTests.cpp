// Hex lists: the shapes Aseprite, GIMP and colour generators write, and the 8-digit RRGGBBAA order.
#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto hexCoder = coder(PaletteFormat::hexRGBA);

TEST(HexRGBACoderTest, WritesAsepritesLinesWithAlphaOnlyWhereNeeded) {
    const Palette palette("Harbour", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::cmyk(0, 0, 0, 0)},
                          {Group("Glass", {Color::rgb255(231, 111, 81, 128, "Buoy")})});
    const std::string text = hexCoder->encode(palette);
    EXPECT_EQ(text, "172a3a\nffffff\ne76f5180\n");

    EXPECT_EQ(hexCoder->decode(text).colors,
              (std::vector<Color>{Color::rgb255(23, 42, 58), Color::rgb(1, 1, 1), Color::rgb255(231, 111, 81, 128)}));
}

TEST(HexRGBACoderTest, ReadsTheShapesInTheWild) {
    // GIMP's export: '#', no final newline. Then short forms, "0x", several colours on a line, comments, and
    // a colour followed by its name.
    const Palette palette = hexCoder->decode(
        "; exported\n// by hand\n# Palette: Harbour\n"
        "#172a3a\n#e76\n#e76f5180\n0xE9C46A\n#ef476f, #ffd166;06d6a0\nff0000 Signal red\n#00ff00");
    EXPECT_EQ(palette.colors,
              (std::vector<Color>{Color::rgb255(0x17, 0x2a, 0x3a), Color::rgb255(0xee, 0x77, 0x66), Color::rgb255(0xe7, 0x6f, 0x51, 0x80),
                                  Color::rgb255(0xe9, 0xc4, 0x6a), Color::rgb255(0xef, 0x47, 0x6f), Color::rgb255(0xff, 0xd1, 0x66),
                                  Color::rgb255(0x06, 0xd6, 0xa0), Color::rgb255(255, 0, 0, 255, "Signal red"), Color::rgb255(0, 255, 0)}));
}

TEST(HexRGBACoderTest, RefusesWhatIsNotAHexList) {
    for (const char* text : {"", "; only a comment\n", "ff00zz\n", "12345\n", "#172a3a\nhello\n"})
        expectCommonError(Case::invalidFormat, [text] { hexCoder->decode(text); });
}
