#include <gtest/gtest.h>

#include <array>

#include "formats/color/ColorBlindness.h"

using namespace kro;

namespace {

using RGB = std::array<double, 3>;

RGB components(const ColorValue& color) { return {color.red(), color.green(), color.blue()}; }

void expectRGB(const ColorValue& color, RGB expected) {
    const auto actual = components(color);
    for (int i = 0; i < 3; ++i) EXPECT_DOUBLE_EQ(actual[i], expected[i]) << "channel " << i;
}

}  // namespace

TEST(ColorBlindness, EachMatrixMapsThePrimariesToItsColumns) {
    const auto red = ColorValue::rgb(1, 0, 0);
    const auto green = ColorValue::rgb(0, 1, 0);
    const auto blue = ColorValue::rgb(0, 0, 1);
    struct Case {
        ColorBlindness blindness;
        RGB fromRed, fromGreen, fromBlue;
    };
    const Case cases[] = {
        {ColorBlindness::deuteranopia, {0.625, 0.7, 0}, {0.375, 0.3, 0.3}, {0, 0, 0.7}},
        {ColorBlindness::protanopia, {0.56667, 0.55833, 0}, {0.43333, 0.44167, 0.24167}, {0, 0, 0.75833}},
        {ColorBlindness::tritanopia, {0.95, 0, 0}, {0.05, 0.43, 0.4755}, {0, 0.56, 0.525}},
        {ColorBlindness::achromatopsia, {0.299, 0.299, 0.299}, {0.587, 0.587, 0.587}, {0.114, 0.114, 0.114}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(text(c.blindness));
        expectRGB(simulated(red, c.blindness), c.fromRed);
        expectRGB(simulated(green, c.blindness), c.fromGreen);
        expectRGB(simulated(blue, c.blindness), c.fromBlue);
    }
}

TEST(ColorBlindness, ResultsAreNotClampedAndKeepAlpha) {
    // The tritanopia rows sum to 0.99 and 1.0005.
    expectRGB(simulated(ColorValue::rgb(1, 1, 1), ColorBlindness::tritanopia), {1.0, 0.99, 1.0005});
    const auto grey = simulated(ColorValue::rgb(0.2, 0.4, 0.6, 0.25), ColorBlindness::achromatopsia);
    const double expected = 0.299 * 0.2 + 0.587 * 0.4 + 0.114 * 0.6;
    expectRGB(grey, {expected, expected, expected});
    EXPECT_DOUBLE_EQ(grey.alpha(), 0.25);
}

TEST(ColorBlindness, WorksOnTheSRGBNumbersWithoutLeavingTheRGBModel) {
    // An RGB colour in another space keeps its numbers: only the model is matched.
    const auto p3 = ColorValue::withComponents(ColorSpace::displayP3(), {1, 0, 0}, 0.5);
    expectRGB(simulated(p3, ColorBlindness::achromatopsia), {0.299, 0.299, 0.299});
    EXPECT_EQ(simulated(p3, ColorBlindness::normal), p3);

    // A CMYK colour is converted to sRGB, for `normal` too.
    const auto cmyk = ColorValue::withComponents(ColorSpace::genericCMYK(), {0, 0, 0, 0});
    const auto normal = simulated(cmyk, ColorBlindness::normal);
    EXPECT_EQ(normal.colorSpace()->model(), ColorSpaceModel::rgb);
    EXPECT_NEAR(normal.red(), 1, 0.02);
    EXPECT_NEAR(normal.blue(), 1, 0.02);
}
