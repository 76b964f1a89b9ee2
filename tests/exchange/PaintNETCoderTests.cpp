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
    // A comment after a value, lower case, "0x", and the extra empty line Paint.NET leaves at the end.
    EXPECT_EQ(paintNETCoder->decode("; Paint.NET Palette File\nff172a3a ; deep water\n0x80E76F51\n\n").colors,
              (std::vector<Color>{Color::rgb255(23, 42, 58), Color::rgb255(231, 111, 81, 128)}));

    // Pinta leaves out leading zeros of the alpha; Paint.NET reads six digits as fully transparent. A file
    // needs one whole value to be Paint.NET's.
    binarytest::LogCapture log;
    EXPECT_EQ(paintNETCoder->decode("; Hexadecimal format: aarrggbb\nF00FF00\nFF0000FF\n172a3a\n").colors,
              (std::vector<Color>{Color::rgb255(0, 255, 0, 15), Color::rgb255(0, 0, 255), Color::rgb255(23, 42, 58, 0)}));
    EXPECT_TRUE(log.contains("PAL.Coder.PaintNET: Values of fewer than 8 digits were read as Paint.NET reads them, with the "
                             "missing leading digits as 0: a 6-digit RRGGBB value is fully transparent"));

    // A file without comments is Paint.NET's when its values have all eight digits, and every colour is kept.
    std::string many;
    for (int i = 0; i < 100; ++i) many += "FF0000FF\n";
    EXPECT_EQ(paintNETCoder->decode(many).colors.size(), 100u);
    EXPECT_TRUE(log.contains("PAL.Coder.PaintNET: The file holds 100 colors; Paint.NET uses only the first 96"));
}

TEST(PaintNETCoderTest, RefusesShortValuesWithoutItsCommentsAndLinesThatAreNotOneValue) {
    for (const char* text : {"", "172a3a\n40708a\n", "FF172A3A FF40708A\n", "FF172A3A\nnot a color\n", "FF172A3AFF\n"})
        expectCommonError(Case::invalidFormat, [text] { paintNETCoder->decode(text); });
}
