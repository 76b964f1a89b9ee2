#include <gtest/gtest.h>

#include <cmath>

#include "formats/color/WCAG.h"

using namespace kro;

namespace {

ColorValue grey(double value) { return ColorValue::rgb(value, value, value); }

const ColorValue black = grey(0);
const ColorValue white = grey(1);
// Luminance 0.2: light enough to reach 3.0 both against black and against white.
const ColorValue midGrey = grey(0.48452920448170683);

}  // namespace

TEST(WCAG, RatiosAndTheirLevels) {
    EXPECT_DOUBLE_EQ(WCAG::ratio(black, white), 21.0);
    EXPECT_DOUBLE_EQ(WCAG::ratio(white, black), 21.0);
    EXPECT_EQ(WCAG::ratioText(WCAG::ratio(black, white)), "21.00");
    EXPECT_EQ(WCAG::ratioText(WCAG::ratio(white, white)), "1.00");
    using Level = WCAGConformanceLevel;
    for (auto [ratio, level] : std::initializer_list<std::pair<double, Level>>{
             {1.0, Level::fail}, {2.9999, Level::fail}, {3.0, Level::aaLarge}, {4.4999, Level::aaLarge}, {4.5, Level::aa},
             {6.999, Level::aa}, {7.0, Level::aaa}, {21.0, Level::aaa}}) {
        EXPECT_EQ(WCAG::level(ratio), level) << ratio;
    }
    // The level is decided before rounding for display.
    EXPECT_EQ(WCAG::ratioText(6.999), "7.00");
}

TEST(WCAG, LuminanceUsesTheWCAGThresholdOnTheComponentsAsTheyStand) {
    // 0.04 lies between the WCAG threshold (0.03928) and the sRGB one (0.04045): it takes the power curve.
    EXPECT_DOUBLE_EQ(WCAG::luminance(grey(0.04)), std::pow(0.095 / 1.055, 2.4));
    EXPECT_DOUBLE_EQ(WCAG::luminance(grey(0.03)), 0.03 / 12.92);
    EXPECT_DOUBLE_EQ(WCAG::luminance(ColorValue::rgb(0, 0, 1)), 0.0722);
    // A Display P3 red is not converted to sRGB first.
    EXPECT_DOUBLE_EQ(WCAG::luminance(ColorValue::withComponents(ColorSpace::displayP3(), {1, 0, 0})), 0.2126);
}

TEST(WCAG, FixWalkStopsAtTheTargetOrAtTheEndOfTheBrightness) {
    const auto same = WCAG::fixColor(white, black, 7, 0.0001, 3.0);
    EXPECT_EQ(same.color, white);
    EXPECT_EQ(same.steps, 7);

    const auto atOnce = WCAG::fixColor(black, black, 0, -0.0001, 3.0);
    EXPECT_DOUBLE_EQ(atOnce.color.brightness(), 0);
    EXPECT_EQ(atOnce.steps, 0);
    const auto top = WCAG::fixColor(white, white, 0, 0.0001, 3.0);
    EXPECT_DOUBLE_EQ(top.color.brightness(), 1);
    EXPECT_EQ(top.steps, 0);

    // Walking up from a dark, half-saturated blue: the first brightness that reaches 3.0 against black,
    // with hue, saturation and alpha kept.
    const auto start = ColorValue::hsb(0.6, 0.5, 0.1, 0.7);
    const auto walked = WCAG::fixColor(start, black, 0, 0.0001, 3.0);
    const double brightness = walked.color.brightness();
    EXPECT_NEAR(brightness, 0.1 + walked.steps * 0.0001, 1e-9);
    EXPECT_GE(WCAG::ratio(walked.color, black), 3.0);
    EXPECT_LT(WCAG::ratio(ColorValue::hsb(0.6, 0.5, brightness - 0.0001), black), 3.0);
    EXPECT_NEAR(walked.color.hue(), 0.6, 1e-9);
    EXPECT_NEAR(walked.color.saturation(), 0.5, 1e-9);
    EXPECT_DOUBLE_EQ(walked.color.alpha(), 0.7);
}

TEST(WCAG, FixChoosesTheDirection) {
    EXPECT_FALSE(WCAG::fixed(black, white));

    // Both directions reach 3.0 against the mid grey: the shorter walk wins.
    const auto nearDark = grey(0.3);
    EXPECT_EQ(WCAG::fixed(nearDark, midGrey), WCAG::fixColor(nearDark, midGrey, 0, -0.0001, 3.0).color);
    const auto nearLight = grey(0.75);
    EXPECT_EQ(WCAG::fixed(nearLight, midGrey), WCAG::fixColor(nearLight, midGrey, 0, 0.0001, 3.0).color);
    // Halfway between the two thresholds both walks are as long: the downward one wins.
    const auto halfway = grey(0.52752);
    const auto up = WCAG::fixColor(halfway, midGrey, 0, 0.0001, 3.0);
    const auto down = WCAG::fixColor(halfway, midGrey, 0, -0.0001, 3.0);
    ASSERT_EQ(up.steps, down.steps);
    EXPECT_EQ(WCAG::fixed(halfway, midGrey), down.color);

    // Only one direction reaches.
    EXPECT_GT(WCAG::fixed(grey(0.1), black)->brightness(), 0.1);
    EXPECT_LT(WCAG::fixed(grey(0.9), white)->brightness(), 0.9);

    // Pure blue is never light enough to reach 3.0 upwards. Against a dark grey black is not dark enough
    // either, and black's ratio (2.0) beats full blue's; against black, full blue is the better end.
    const auto blue = ColorValue::hsb(2.0 / 3, 1, 0.5);
    const auto darkGrey = grey(0.2474);  // luminance about 0.05
    EXPECT_DOUBLE_EQ(WCAG::fixed(blue, darkGrey)->brightness(), 0);
    const auto brightest = WCAG::fixed(blue, black);
    EXPECT_DOUBLE_EQ(brightest->brightness(), 1);
    EXPECT_NEAR(brightest->hue(), 2.0 / 3, 1e-9);
}
