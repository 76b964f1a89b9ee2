#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PalColor.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

void expectParsed(std::string_view text, ColorByteFormat format, double r, double g, double b, double a) {
    const RGB rgb = parseHex(text, format);
    EXPECT_DOUBLE_EQ(rgb.rf, r) << text << " as " << PAL::text(format);
    EXPECT_DOUBLE_EQ(rgb.gf, g) << text << " as " << PAL::text(format);
    EXPECT_DOUBLE_EQ(rgb.bf, b) << text << " as " << PAL::text(format);
    EXPECT_DOUBLE_EQ(rgb.af, a) << text << " as " << PAL::text(format);
}

constexpr double x11 = 0x11 / 255.0, x22 = 0x22 / 255.0, x33 = 0x33 / 255.0, x44 = 0x44 / 255.0;

}  // namespace

TEST(PalHexTest, EightDigitsInEveryByteOrderAndSixWithoutAlpha) {
    using F = ColorByteFormat;
    expectParsed("0x11223344", F::rgb, x11, x22, x33, 1);  // the alpha byte is dropped
    expectParsed("0x11223344", F::bgr, x33, x22, x11, 1);
    expectParsed("0x11223344", F::argb, x22, x33, x44, x11);
    expectParsed("0x11223344", F::rgba, x11, x22, x33, x44);
    expectParsed("0x11223344", F::abgr, x44, x33, x22, x11);
    expectParsed("0x11223344", F::bgra, x33, x22, x11, x44);
    // Six digits: the orders with alpha read as their three-byte order.
    for (const F format : {F::rgb, F::argb, F::rgba}) expectParsed("#112233", format, x11, x22, x33, 1);
    for (const F format : {F::bgr, F::abgr, F::bgra}) expectParsed("#112233", format, x33, x22, x11, 1);
}

TEST(PalHexTest, ShortFormsDoubleEachNibble) {
    expectParsed("#FFF", ColorByteFormat::rgb, 1, 1, 1, 1);
    expectParsed("#FFFA", ColorByteFormat::rgb, 1, 1, 1, 1);
    expectParsed("#FFFA", ColorByteFormat::rgba, 1, 1, 1, 0xAA / 255.0);
    expectParsed("1234", ColorByteFormat::argb, x22, x33, x44, x11);
    expectParsed("123", ColorByteFormat::bgr, x33, x22, x11, 1);
    // Trimmed at both ends, case does not matter.
    expectParsed("  #aBc;", ColorByteFormat::rgb, 0xAA / 255.0, 0xBB / 255.0, 0xCC / 255.0, 1);
    // The length is that of the whole text: "12zz" passes as four characters, its value the scanned 0x12.
    expectParsed("12zz", ColorByteFormat::rgba, 0, 0, x11, x22);
}

TEST(PalHexTest, FailuresCarryTheTextAsGiven) {
    EXPECT_EQ(expectCommonError(Case::invalidRGBHexString, [] { parseHex("12345", ColorByteFormat::rgb); }).text(), "12345");
    EXPECT_EQ(expectCommonError(Case::invalidRGBHexString, [] { parseHex("#zzzzzz", ColorByteFormat::argb); }).text(), "#zzzzzz");
    for (const char* text : {"", "#", "1234567", "12", "123456789", "0x", "0x12345"})
        expectCommonError(Case::invalidRGBHexString, [text] { Color::hex(text, ColorByteFormat::rgba); });
}

TEST(PalHexTest, FormattingRoundsHalfAwayFromZeroInEveryOrder) {
    // 0.5 * 255 = 127.5 rounds up to 0x80.
    const Color color = Color::rgb(0x11 / 255.0, 0.5, 1, 0x44 / 255.0);
    EXPECT_EQ(color.hexString(ColorByteFormat::rgb), "1180ff");
    EXPECT_EQ(color.hexString(ColorByteFormat::bgr, true, true), "#FF8011");
    EXPECT_EQ(color.hexString(ColorByteFormat::argb), "441180ff");
    EXPECT_EQ(color.hexString(ColorByteFormat::rgba), "1180ff44");
    EXPECT_EQ(color.hexString(ColorByteFormat::abgr, true), "#44ff8011");
    EXPECT_EQ(color.hexString(ColorByteFormat::bgra, false, true), "FF801144");
    // Any space formats, through RGB.
    EXPECT_EQ(Color::gray(1).hexString(), "ffffff");
}
