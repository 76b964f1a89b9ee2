// The program's own component sets (CMYK, HSL, HWB) and hex text in both directions.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "formats/color/ColorConversions.h"

namespace kro {
namespace {

using Four = std::array<double, 4>;
Four inks(const CMYKValues& v) { return {v.cyan, v.magenta, v.yellow, v.black}; }

TEST(ColorConversionsTest, CMYKIsTheSimpleFormulaInWholePercent) {
    EXPECT_EQ(inks(cmyk(ColorValue::rgb(1, 1, 1))), (Four{0, 0, 0, 0}));
    EXPECT_EQ(inks(cmyk(ColorValue::rgb(0, 0, 0))), (Four{0, 0, 0, 100}));
    EXPECT_EQ(inks(cmyk(ColorValue::rgb(0.2, 0.4, 0.6, 0.3))), (Four{67, 33, 0, 40}));
    EXPECT_EQ(cmyk(ColorValue::rgb(0.2, 0.4, 0.6, 0.3)).alpha, 0.3);
    // Black 12.5 rounds away from zero.
    EXPECT_EQ(inks(cmyk(ColorValue::rgb(0.875, 0.875, 0.875))), (Four{0, 0, 0, 13}));
}

TEST(ColorConversionsTest, HSLOfPrimariesPinkAndGray) {
    struct Case { ColorValue color; double hue, saturation, lightness; };
    for (const auto& [color, hue, saturation, lightness] : {
             Case{ColorValue::rgb(1, 0, 0), 0, 100, 50},
             // #FF0080: red dominates with more blue than green, so the hue wraps to just under 360.
             Case{ColorValue::rgb(1, 0, 128.0 / 255.0), 360 - 60 * 128.0 / 255.0, 100, 50},
             Case{ColorValue::rgb(0.3, 0.3, 0.3), 0, 0, 30},
             Case{ColorValue::rgb(1, 1, 1), 0, 0, 100},  // no division by zero at full lightness
             // Light colours take the other saturation formula; green and blue hues come from their own branches.
             Case{ColorValue::rgb(0.6, 1, 0.8), 150, 100, 80},
             Case{ColorValue::rgb(0, 0, 1), 240, 100, 50},
             Case{ColorValue::rgb(1, 1, 0), 60, 100, 50},  // red wins a tie for the largest component
         }) {
        const auto values = hsl(color);
        EXPECT_NEAR(values.hue, hue, 1e-9) << hexText(color);
        EXPECT_NEAR(values.saturation, saturation, 1e-9) << hexText(color);
        EXPECT_NEAR(values.lightness, lightness, 1e-9) << hexText(color);
    }
    EXPECT_EQ(hsl(ColorValue::rgb(1, 0, 0, 0.5)).alpha, 0.5);
}

TEST(ColorConversionsTest, HWBRoundsAndDoesNotWrapTheHue) {
    struct Case { ColorValue color; double hue, whiteness, blackness; };
    for (const auto& [color, hue, whiteness, blackness] : {
             Case{ColorValue::rgb(1, 0, 0), 0, 0, 0},
             Case{ColorValue::rgb(1, 0, 128.0 / 255.0), -30, 0, 0},
             Case{ColorValue::rgb(0, 0, 1), 240, 0, 0},
             Case{ColorValue::rgb(0.2, 0.9, 0.2), 120, 20, 10},
             Case{ColorValue::rgb(0.3, 0.3, 0.3), 0, 30, 70},
         }) {
        const auto values = hwb(color);
        EXPECT_EQ(values.hue, hue) << hexText(color);
        EXPECT_EQ(values.whiteness, whiteness) << hexText(color);
        EXPECT_EQ(values.blackness, blackness) << hexText(color);
    }
    EXPECT_EQ(hwb(ColorValue::rgb(0.3, 0.3, 0.3, 0.7)).alpha, 0.7);
}

TEST(ColorConversionsTest, ComponentSetsKeepTheNumbersOfAnyRGBSpace) {
    // A Display P3 pick is not moved into generic RGB first: its numbers are read as they are.
    auto p3 = ColorValue::withComponents(ColorSpace::displayP3(), {1, 0, 0});
    EXPECT_EQ(hsl(p3).saturation, 100);
    EXPECT_EQ(inks(cmyk(p3)), (Four{0, 100, 100, 0}));
    // Another model is converted; a colour with no components reads as black.
    auto cmykColor = ColorValue::withComponents(ColorSpace::genericCMYK(), {0, 0, 0, 0});
    EXPECT_LE(cmyk(cmykColor).black, 1);
    EXPECT_EQ(inks(cmyk(ColorValue::nonComponent(ColorType::pattern))), (Four{0, 0, 0, 100}));
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
    for (const auto& [text, hex] : std::initializer_list<std::pair<const char*, const char*>>{
             {"#FF8000", "FF8000"}, {"ff8000", "FF8000"}, {"  #a1b2c3\n", "A1B2C3"}, {"0x102030", "102030"},
             {"\xE2\x80\x83#102030\xC2\xA0", "102030"},  // Unicode spaces trim too
             {"# 102030", "102030"},                      // the scanner skips spaces after "#"
             {"#12", "000012"}, {"FFF", "000FFF"},
             {"1FF8000", "FF8000"},                 // the low three bytes
             {"FF8000zz", "FF8000"},                // the number stops at the first non-digit
             {"FFFFFFFFFFFFFFFFFFFF", "FFFFFF"},  // too large reads as the largest number
             {"GG0000", "000000"}, {"##FF0000", "000000"}, {"", "000000"}}) {
        auto color = colorFromHex(text);
        EXPECT_EQ(hexText(color), hex) << text;
        EXPECT_EQ(color.alpha(), 1);
        EXPECT_EQ(color.colorSpace(), ColorSpace::sRGB());
    }
}

TEST(ColorConversionsTest, ScannerReadingOfNumbersAndPairs) {
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    for (const auto& [text, number] : std::initializer_list<std::pair<const char*, std::optional<std::uint64_t>>>{
             {"1f", 31}, {" \t0X1f", 31}, {"0x", 0}, {"0xg", 0}, {"x1", std::nullopt}, {"-1", std::nullopt},
             {"", std::nullopt}, {"FFFFFFFFFFFFFFFF", largest}, {"10000000000000000", largest},
             {"\xFF" "12", std::nullopt}}) {  // a byte that is not UTF-8 is no digit
        EXPECT_EQ(scanHexNumber(text), number) << text;
    }
    using Pairs = std::array<int, 3>;
    for (const auto& [text, pairs] : std::initializer_list<std::pair<const char*, Pairs>>{
             {"FF8001", {255, 128, 1}}, {"GG0000", {0, 0, 0}}, {"12", {18, 0, 0}}, {"123", {18, 3, 0}},
             {"1G2H3I", {1, 2, 3}}, {" F0A0B", {15, 10, 11}}, {"0x1234", {0, 18, 52}}, {"FF00FF99", {255, 0, 255}},
             {"\xC3\xA9" "F0A0B", {0, 10, 11}}}) {  // pairs count characters, not bytes
        EXPECT_EQ(scanHexPairs(text), pairs) << text;
    }
}

}  // namespace
}  // namespace kro
