// The program's own component sets (CMYK, HSL, HWB) and hex text in both directions.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "formats/color/ColorConversions.h"

namespace kro {
namespace {

struct Four {
    double a, b, c, d;
};

void expectValues(const CMYKValues& v, Four expected) {
    EXPECT_EQ(v.cyan, expected.a);
    EXPECT_EQ(v.magenta, expected.b);
    EXPECT_EQ(v.yellow, expected.c);
    EXPECT_EQ(v.black, expected.d);
}

TEST(ColorConversionsTest, CMYKIsTheSimpleFormulaInWholePercent) {
    expectValues(cmyk(ColorValue::rgb(1, 1, 1)), {0, 0, 0, 0});
    expectValues(cmyk(ColorValue::rgb(0, 0, 0)), {0, 0, 0, 100});
    expectValues(cmyk(ColorValue::rgb(0.2, 0.4, 0.6, 0.3)), {67, 33, 0, 40});
    EXPECT_EQ(cmyk(ColorValue::rgb(0.2, 0.4, 0.6, 0.3)).alpha, 0.3);
    // Black 12.5 rounds away from zero.
    expectValues(cmyk(ColorValue::rgb(0.875, 0.875, 0.875)), {0, 0, 0, 13});
}

TEST(ColorConversionsTest, HSLOfPrimariesPinkAndGray) {
    auto red = hsl(ColorValue::rgb(1, 0, 0));
    EXPECT_EQ(red.hue, 0);
    EXPECT_EQ(red.saturation, 100);
    EXPECT_EQ(red.lightness, 50);

    // #FF0080: red dominates with more blue than green, so the hue wraps to just under 360.
    auto pink = hsl(ColorValue::rgb(1, 0, 128.0 / 255.0, 0.5));
    EXPECT_NEAR(pink.hue, 329.88, 0.01);
    EXPECT_EQ(pink.saturation, 100);
    EXPECT_EQ(pink.lightness, 50);
    EXPECT_EQ(pink.alpha, 0.5);

    auto gray = hsl(ColorValue::rgb(0.3, 0.3, 0.3));
    EXPECT_EQ(gray.hue, 0);
    EXPECT_EQ(gray.saturation, 0);
    EXPECT_NEAR(gray.lightness, 30, 1e-12);

    // Light colours take the other saturation formula; green and blue hues come from their own branches.
    auto mint = hsl(ColorValue::rgb(0.6, 1, 0.8));
    EXPECT_NEAR(mint.hue, 150, 1e-9);
    EXPECT_NEAR(mint.saturation, 100, 1e-9);
    EXPECT_NEAR(mint.lightness, 80, 1e-9);
    EXPECT_NEAR(hsl(ColorValue::rgb(0, 0, 1)).hue, 240, 1e-12);
    // Red wins a tie for the largest component.
    EXPECT_NEAR(hsl(ColorValue::rgb(1, 1, 0)).hue, 60, 1e-12);
}

TEST(ColorConversionsTest, HWBRoundsAndDoesNotWrapTheHue) {
    auto red = hwb(ColorValue::rgb(1, 0, 0));
    EXPECT_EQ(red.hue, 0);
    EXPECT_EQ(red.whiteness, 0);
    EXPECT_EQ(red.blackness, 0);

    EXPECT_EQ(hwb(ColorValue::rgb(1, 0, 128.0 / 255.0)).hue, -30);
    EXPECT_EQ(hwb(ColorValue::rgb(0, 0, 1)).hue, 240);
    EXPECT_EQ(hwb(ColorValue::rgb(0.2, 0.9, 0.2)).hue, 120);

    auto gray = hwb(ColorValue::rgb(0.3, 0.3, 0.3, 0.7));
    EXPECT_EQ(gray.hue, 0);
    EXPECT_EQ(gray.whiteness, 30);
    EXPECT_EQ(gray.blackness, 70);
    EXPECT_EQ(gray.alpha, 0.7);
}

TEST(ColorConversionsTest, ComponentSetsKeepTheNumbersOfAnyRGBSpace) {
    // A Display P3 pick is not moved into generic RGB first: its numbers are read as they are.
    auto p3 = ColorValue::withComponents(ColorSpace::displayP3(), {1, 0, 0});
    EXPECT_EQ(hsl(p3).saturation, 100);
    expectValues(cmyk(p3), {0, 100, 100, 0});
    // Another model is converted; a colour with no components reads as black.
    auto cmykColor = ColorValue::withComponents(ColorSpace::genericCMYK(), {0, 0, 0, 0});
    EXPECT_LE(cmyk(cmykColor).black, 1);
    expectValues(cmyk(ColorValue::nonComponent(ColorType::pattern)), {0, 0, 0, 100});
}

TEST(ColorConversionsTest, HexTextRoundsHalvesUpAndPrintsWhatItGets) {
    EXPECT_EQ(hexText(ColorValue::rgb(1, 0, 0.5)), "FF0080");  // 127.5 rounds away from zero
    EXPECT_EQ(hexText(ColorValue::rgb(0.2, 0.4, 0.6)), "336699");
    EXPECT_EQ(hexText(0, 1.0 / 255.0 * 0.49, 0.0), "000000");
    // Numbers out of range print as "%02X" prints them; nothing clamps them.
    EXPECT_EQ(hexText(1.2, 0, 0), "1320000");
    EXPECT_EQ(hexText(-0.003, 0, 0), "FFFFFFFF0000");
    // An RGB colour in any space gives its own numbers; another model goes through sRGB.
    EXPECT_EQ(hexText(ColorValue::withComponents(ColorSpace::displayP3(), {1, 0, 0})), "FF0000");
    EXPECT_EQ(hexText(ColorValue::withComponents(ColorSpace::labD50(), {100, 0, 0})), "FFFFFF");
    EXPECT_EQ(hexText(ColorValue::nonComponent(ColorType::catalog)), "000000");
}

TEST(ColorConversionsTest, ColorFromHexReadsAsAScannerDoes) {
    struct Case {
        const char* text;
        const char* hex;
    };
    for (const auto& [text, hex] : {
             Case{"#FF8000", "FF8000"},
             Case{"ff8000", "FF8000"},
             Case{"  #a1b2c3\n", "A1B2C3"},
             Case{"\xE2\x80\x83#102030\xC2\xA0", "102030"},  // Unicode spaces trim too
             Case{"# 102030", "102030"},                      // the scanner skips spaces after "#"
             Case{"0x102030", "102030"},
             Case{"#12", "000012"},
             Case{"FFF", "000FFF"},
             Case{"1FF8000", "FF8000"},                 // the low three bytes
             Case{"FF8000zz", "FF8000"},                // the number stops at the first non-digit
             Case{"FFFFFFFFFFFFFFFFFFFF", "FFFFFF"},  // too large reads as the largest number
             Case{"GG0000", "000000"},
             Case{"##FF0000", "000000"},
             Case{"", "000000"},
         }) {
        auto color = colorFromHex(text);
        EXPECT_EQ(hexText(color), hex) << text;
        EXPECT_EQ(color.alpha(), 1);
        EXPECT_EQ(color.colorSpace(), ColorSpace::sRGB());
    }
}

TEST(ColorConversionsTest, ScannerReadingOfNumbersAndPairs) {
    EXPECT_EQ(scanHexNumber("1f"), 31u);
    EXPECT_EQ(scanHexNumber(" \t0X1f"), 31u);
    EXPECT_EQ(scanHexNumber("0x"), 0u);
    EXPECT_EQ(scanHexNumber("0xg"), 0u);
    EXPECT_EQ(scanHexNumber("x1"), std::nullopt);
    EXPECT_EQ(scanHexNumber("-1"), std::nullopt);
    EXPECT_EQ(scanHexNumber(""), std::nullopt);
    EXPECT_EQ(scanHexNumber("FFFFFFFFFFFFFFFF"), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(scanHexNumber("10000000000000000"), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(scanHexNumber("\xFF" "12"), std::nullopt);  // a byte that is not UTF-8 is no digit

    using Pairs = std::array<int, 3>;
    EXPECT_EQ(scanHexPairs("FF8001"), (Pairs{255, 128, 1}));
    EXPECT_EQ(scanHexPairs("GG0000"), (Pairs{0, 0, 0}));
    EXPECT_EQ(scanHexPairs("12"), (Pairs{18, 0, 0}));
    EXPECT_EQ(scanHexPairs("123"), (Pairs{18, 3, 0}));
    EXPECT_EQ(scanHexPairs("1G2H3I"), (Pairs{1, 2, 3}));
    EXPECT_EQ(scanHexPairs(" F0A0B"), (Pairs{15, 10, 11}));
    EXPECT_EQ(scanHexPairs("0x1234"), (Pairs{0, 18, 52}));
    EXPECT_EQ(scanHexPairs("\xC3\xA9" "F0A0B"), (Pairs{0, 10, 11}));  // pairs count characters, not bytes
    EXPECT_EQ(scanHexPairs("FF00FF99"), (Pairs{255, 0, 255}));
}

}  // namespace
}  // namespace kro
