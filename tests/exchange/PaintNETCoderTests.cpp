#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto paintNETCoder = coder(PaletteFormat::paintNET);

constexpr std::string_view header =
    "\xEF\xBB\xBF"
    "; paint.net Palette File\r\n"
    "; Lines that start with a semicolon are comments\r\n"
    "; Colors are written as 8-digit hexadecimal numbers: aarrggbb\r\n"
    "; For example, this would specify green: FF00FF00\r\n"
    "; The alpha ('aa') value specifies how transparent a color is. FF is fully opaque, 00 is fully transparent.\r\n"
    "; A palette must consist of ninety six (96) colors. If there are less than this, the remaining color\r\n"
    "; slots will be set to white (FFFFFFFF). If there are more, then the remaining colors will be ignored.\r\n";

TEST(PaintNETCoderTest, WritesPaintNETsLayoutAndReadsItBack) {
    // Alpha first, upper case, no padding to 96 colours; groups flatten and names have no place.
    Palette palette("Harbour", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(64, 112, 138)},
                    {Group("Warm", {Color::rgb255(233, 196, 106), Color::rgb255(231, 111, 81, 128)})});
    const std::string text = paintNETCoder->encode(palette);
    EXPECT_EQ(text, std::string(header) + "FF172A3A\r\nFF40708A\r\nFFE9C46A\r\n80E76F51\r\n");
    auto nameless = palette.allColors();
    nameless[0].name.clear();
    EXPECT_EQ(paintNETCoder->decode(text).colors, nameless);
    EXPECT_TRUE(paintNETCoder->decode(paintNETCoder->encode(Palette())).colors.empty());
}

TEST(PaintNETCoderTest, ReadsAsPaintNETDoes) {
    // No byte-order mark, LF and lone CR, a comment after a value, a line of blanks, lower case, "0x", the
    // extra empty line Paint.NET leaves at the end.
    const Palette palette = paintNETCoder->decode("; Paint.NET Palette File\nff172a3a ; deep water\r   \n0x80E76F51\r\n\r\n");
    ASSERT_EQ(palette.colors.size(), 2u);
    EXPECT_EQ(palette.colors[0], Color::rgb255(23, 42, 58));
    EXPECT_EQ(palette.colors[1], Color::rgb255(231, 111, 81, 128));

    // Pinta leaves out leading zeros of the alpha; Paint.NET reads six digits as fully transparent.
    binarytest::LogCapture log;
    const Palette shortValues = paintNETCoder->decode("; Hexadecimal format: aarrggbb\nF00FF00\nFF0000FF\n172a3a\n");
    ASSERT_EQ(shortValues.colors.size(), 3u);
    EXPECT_EQ(shortValues.colors[0], Color::rgb255(0, 255, 0, 15));
    EXPECT_EQ(shortValues.colors[2], Color::rgb255(23, 42, 58, 0));
    EXPECT_FALSE(log.lines.empty());

    // A file without comments is Paint.NET's when its values have all eight digits, and every colour is kept.
    std::string many;
    for (int i = 0; i < 100; ++i) many += "FF0000FF\n";
    EXPECT_EQ(paintNETCoder->decode(many).colors.size(), 100u);
}

TEST(PaintNETCoderTest, LeavesOtherTextToTheCodersAfterIt) {
    // Plain hex lists, RGB and CSV lines, "#" values, and text with no colour at all.
    for (const char* text : {"", "\n\n", "172a3a\n40708a\n", "#FF172A3A\n", "255 0 0\n", "255;0;0\n", "FF172A3A FF40708A\n",
                             "FF172A3A\nnot a colour\n", "FF172A3AFF\n", "ROWS 1\nCOLS 1\n", "GIMP Palette\n"})
        expectCommonError(Case::invalidFormat, [text] { paintNETCoder->decode(text); });
}
