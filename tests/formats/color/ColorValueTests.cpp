// The colour value and its spaces: conversions by Little CMS, the same-model rule, and thread safety.
#include <gtest/gtest.h>
#include <lcms2.h>

#include <thread>

#include "platform/ColorValue.h"
#include "platform/Resources.h"

namespace kro {
namespace {

using Components = std::vector<double>;

void expectNear(const Components& actual, const Components& expected, double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

Components convert(const ColorValue& color, const std::shared_ptr<const ColorSpace>& space) {
    auto converted = color.converted(space);
    EXPECT_TRUE(converted.has_value());
    return converted ? converted->components() : Components{};
}

std::string profileBytes(cmsHPROFILE profile) {
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::string bytes(size, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

// Reference numbers from the spaces' published primaries and curves.
TEST(ColorSpaceTest, RGBSpacesConvertWithTheirPrimariesAndCurves) {
    expectNear(convert(ColorValue::rgb(1, 0, 0), ColorSpace::displayP3()), {0.9175, 0.2003, 0.1386}, 0.002);
    expectNear(convert(ColorValue::rgb(0, 1, 0), ColorSpace::adobeRGB1998()), {0.5649, 1.0, 0.2345}, 0.002);
    // Gray stays gray; only the curve differs: sRGB 0.5 is linear 0.2140, which gamma 1.8 encodes as 0.4248.
    expectNear(convert(ColorValue::rgb(0.5, 0.5, 0.5), ColorSpace::genericRGB()), {0.4248, 0.4248, 0.4248}, 0.002);
}

TEST(ColorSpaceTest, RoundTripsThroughWiderSpacesKeepTheColour) {
    for (const Components& rgb : {Components{0.1, 0.5, 0.9}, Components{1, 1, 1}, Components{0, 0, 0},
                                  Components{0.8, 0.2, 0.4}, Components{0.25, 0.75, 0.3}}) {
        auto color = ColorValue::rgb(rgb[0], rgb[1], rgb[2]);
        for (const auto& space : {ColorSpace::displayP3(), ColorSpace::adobeRGB1998(), ColorSpace::labD50()}) {
            auto there = color.converted(space);
            ASSERT_TRUE(there);
            expectNear(convert(*there, ColorSpace::sRGB()), rgb, 1e-4);
        }
    }
}

TEST(ColorSpaceTest, ConversionClampsToTheTargetGamut) {
    auto p3Red = ColorValue::withComponents(ColorSpace::displayP3(), {1, 0, 0});
    expectNear(convert(p3Red, ColorSpace::sRGB()), {1, 0, 0}, 1e-9);
    auto white = ColorValue::rgb(1, 1, 1);
    expectNear(convert(white, ColorSpace::labD50()), {100, 0, 0}, 0.05);
    expectNear(convert(ColorValue::rgb(1, 0, 0), ColorSpace::labD50()), {54.29, 80.80, 69.89}, 0.3);
}

TEST(ColorSpaceTest, GenericCMYKComesFromTheShippedProfile) {
    EXPECT_TRUE(resource("GenericCMYK.icc"));
    auto white = convert(ColorValue::rgb(1, 1, 1), ColorSpace::genericCMYK());
    for (double ink : white) EXPECT_NEAR(ink, 0, 0.01);
    auto black = convert(ColorValue::rgb(0, 0, 0), ColorSpace::genericCMYK());
    EXPECT_GT(black[3], 0.8);
    auto azure = ColorValue::rgb(0, 0.6, 0.9);
    EXPECT_GT(azure.cyan(), 0.7);
    EXPECT_LT(azure.magenta(), azure.cyan());
    // Colours a press can print come back close; perceptual tables move them a little.
    for (const Components& rgb : {Components{0.6, 0.4, 0.3}, Components{0.5, 0.5, 0.5}, Components{0.8, 0.3, 0.3}}) {
        auto there = ColorValue::rgb(rgb[0], rgb[1], rgb[2]).converted(ColorSpace::genericCMYK());
        ASSERT_TRUE(there);
        expectNear(convert(*there, ColorSpace::sRGB()), rgb, 0.04);
    }
    // Paper is white, and full black ink is a dark gray, not black: the press's black point.
    expectNear(ColorValue::withComponents(ColorSpace::genericCMYK(), {0, 0, 0, 0}).converted(ColorSpace::sRGB())
                   ->components(), {1, 1, 1}, 0.005);
    EXPECT_LT(ColorValue::withComponents(ColorSpace::genericCMYK(), {0, 0, 0, 1}).red(), 0.25);
}

TEST(ColorSpaceTest, GraySpacesDifferByTheirCurve) {
    auto linearMid = ColorValue::withComponents(ColorSpace::linearGray(), {0.2140});
    expectNear(convert(linearMid, ColorSpace::sRGB()), {0.5, 0.5, 0.5}, 0.003);
    auto gammaMid = ColorValue::withComponents(ColorSpace::genericGray(), {0.5});
    auto rgb = convert(gammaMid, ColorSpace::sRGB());
    EXPECT_NEAR(rgb[0], rgb[1], 1e-6);
    EXPECT_NEAR(rgb[1], rgb[2], 1e-6);
    EXPECT_NEAR(rgb[0], 0.5, 0.03);  // gamma 2.2 lies close to the sRGB curve
}

TEST(ColorSpaceTest, ProfilesFromBytesLoadOnlyWhenTheyCanConvert) {
    EXPECT_FALSE(ColorSpace::fromICCProfile("", "Empty"));
    EXPECT_FALSE(ColorSpace::fromICCProfile("not a profile at all, but long enough to be read as one?", "Junk"));
    std::string truncated = profileBytes(cmsCreate_sRGBProfile());
    truncated.resize(truncated.size() / 2);
    EXPECT_FALSE(ColorSpace::fromICCProfile(truncated, "Truncated"));
    // An abstract profile changes colours within Lab; it is no colour space of its own.
    EXPECT_FALSE(ColorSpace::fromICCProfile(profileBytes(cmsCreateLab4Profile(nullptr)), "Abstract"));

    cmsCIExyY white = {0.3127, 0.3290, 1.0};
    cmsCIExyYTRIPLE p3 = {{0.680, 0.320, 1.0}, {0.265, 0.690, 1.0}, {0.150, 0.060, 1.0}};
    const cmsFloat64Number sRGBCurve[5] = {2.4, 1.0 / 1.055, 0.055 / 1.055, 1.0 / 12.92, 0.04045};
    cmsToneCurve* curve = cmsBuildParametricToneCurve(nullptr, 4, sRGBCurve);
    cmsToneCurve* curves[3] = {curve, curve, curve};
    auto display = ColorSpace::fromICCProfile(profileBytes(cmsCreateRGBProfile(&white, &p3, curves)), "Monitor");
    cmsFreeToneCurve(curve);
    ASSERT_TRUE(display);
    EXPECT_EQ(display->model(), ColorSpaceModel::rgb);
    EXPECT_EQ(display->name(), "Monitor");
    auto sample = ColorValue::withComponents(display, {0.3, 0.6, 0.9});
    expectNear(convert(sample, ColorSpace::sRGB()),
               convert(ColorValue::withComponents(ColorSpace::displayP3(), {0.3, 0.6, 0.9}), ColorSpace::sRGB()), 1e-4);
}

TEST(ColorValueTest, UsingColorSpaceKeepsTheNumbersOfTheSameModel) {
    auto p3 = ColorValue::withComponents(ColorSpace::displayP3(), {0.2, 0.4, 0.6}, 0.5);
    auto same = p3.usingColorSpace(ColorSpace::genericRGB());
    EXPECT_EQ(same, p3);

    auto srgb = ColorValue::rgb(0.2, 0.4, 0.6, 0.5);
    auto cmyk = srgb.usingColorSpace(ColorSpace::genericCMYK());
    EXPECT_EQ(cmyk.colorSpace(), ColorSpace::genericCMYK());
    EXPECT_EQ(cmyk.alpha(), 0.5);  // alpha passes through every conversion
    // converted() does move between RGB spaces.
    EXPECT_NE(srgb.converted(ColorSpace::genericRGB())->components(), srgb.components());
}

TEST(ColorValueTest, ANonComponentColourConvertsToNothingAndStaysAsItIs) {
    auto pattern = ColorValue::nonComponent(ColorType::pattern);
    EXPECT_FALSE(pattern.converted(ColorSpace::sRGB()));
    EXPECT_EQ(pattern.usingColorSpace(ColorSpace::genericCMYK()), pattern);
    EXPECT_EQ(pattern.colorSpace(), nullptr);
    EXPECT_EQ(pattern.alpha(), 1);
    EXPECT_FALSE(pattern == ColorValue::nonComponent(ColorType::catalog));
}

TEST(ColorValueTest, AccessorsConvertOnlyWhenTheModelDiffers) {
    auto p3 = ColorValue::withComponents(ColorSpace::displayP3(), {1, 0, 0});
    EXPECT_EQ(p3.red(), 1);  // read as it stands, not moved to sRGB
    auto cmyk = ColorValue::withComponents(ColorSpace::genericCMYK(), {0.1, 0.2, 0.3, 0.4});
    EXPECT_EQ(cmyk.yellow(), 0.3);
    EXPECT_GT(cmyk.red(), 0.3);
    EXPECT_LT(cmyk.red(), 0.7);
    auto lab = ColorValue::withComponents(ColorSpace::labD50(), {100, 0, 0});
    EXPECT_NEAR(lab.green(), 1, 0.002);
    // Components are fitted to the space: missing ones are 0, extra ones dropped.
    EXPECT_EQ(ColorValue::withComponents(ColorSpace::sRGB(), {0.5}).components(), (Components{0.5, 0, 0}));
    EXPECT_EQ(ColorValue::withComponents(ColorSpace::genericGray(), {0.5, 1}).components(), (Components{0.5}));
}

TEST(ColorValueTest, HexconeHueSaturationBrightness) {
    auto pink = ColorValue::rgb(1, 0, 0.5);
    EXPECT_NEAR(pink.hue(), 11.0 / 12.0, 1e-12);
    EXPECT_EQ(pink.saturation(), 1);
    EXPECT_EQ(pink.brightness(), 1);
    auto gray = ColorValue::rgb(0.4, 0.4, 0.4);
    EXPECT_EQ(gray.hue(), 0);
    EXPECT_EQ(gray.saturation(), 0);
    EXPECT_EQ(ColorValue::rgb(0, 0, 0).saturation(), 0);

    for (double hue : {0.0, 0.1, 0.3, 0.5, 0.62, 0.8, 0.95}) {
        auto color = ColorValue::hsb(hue, 0.6, 0.7, 0.25);
        EXPECT_NEAR(color.hue(), hue, 1e-12);
        EXPECT_NEAR(color.saturation(), 0.6, 1e-12);
        EXPECT_NEAR(color.brightness(), 0.7, 1e-12);
        EXPECT_EQ(color.alpha(), 0.25);
    }
    EXPECT_EQ(ColorValue::hsb(1.0, 1, 1), ColorValue::hsb(0.0, 1, 1));
    EXPECT_EQ(ColorValue::hsb(0.5, 1, 1).components(), (Components{0, 1, 1}));
}

TEST(ColorValueTest, EqualityNeedsTheSameSpaceComponentsAndAlpha) {
    EXPECT_EQ(ColorValue::rgb(0.1, 0.2, 0.3), ColorValue::rgb(0.1, 0.2, 0.3));
    EXPECT_FALSE(ColorValue::rgb(0.1, 0.2, 0.3) == ColorValue::rgb(0.1, 0.2, 0.3, 0.9));
    EXPECT_FALSE(ColorValue::rgb(0.1, 0.2, 0.3) ==
                 ColorValue::withComponents(ColorSpace::displayP3(), {0.1, 0.2, 0.3}));
}

TEST(ColorValueTest, ConversionsAgreeAcrossThreads) {
    // Several threads make and use the same transforms at once; each must get the answer one thread gets.
    auto color = ColorValue::rgb(0.3, 0.5, 0.7);
    auto expected = convert(color, ColorSpace::genericCMYK());
    std::vector<std::thread> threads;
    std::vector<int> mismatches(4, 0);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 200; ++i) {
                if (color.converted(ColorSpace::genericCMYK())->components() != expected) ++mismatches[t];
                if (i % 50 != 0) continue;
                // A space of its own, made and dropped while the others convert.
                auto space = ColorSpace::fromICCProfile(*resource("GenericCMYK.icc"), "Press");
                if (!space || color.converted(space)->components() != expected) ++mismatches[t];
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(mismatches, std::vector<int>(4, 0));
}

}  // namespace
}  // namespace kro
