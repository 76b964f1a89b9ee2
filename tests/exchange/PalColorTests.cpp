#include <gtest/gtest.h>

#include <cmath>

#include "ExchangeTestSupport.h"
#include "exchange/PalColor.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

void expectRGB(const RGB& rgb, double r, double g, double b, double a, double tolerance = 1e-9) {
    EXPECT_NEAR(rgb.rf, r, tolerance);
    EXPECT_NEAR(rgb.gf, g, tolerance);
    EXPECT_NEAR(rgb.bf, b, tolerance);
    EXPECT_NEAR(rgb.af, a, tolerance);
}

void expectNear(std::vector<double> actual, std::vector<double> expected, double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

}  // namespace

TEST(PalColorTest, FactoriesClampWhatTheyAreGivenExceptLab) {
    // expectExactColors compares components and alpha to the bit.
    expectExactColors({Color::rgb(1.5, -0.2, 0.5, 2.0), Color::rgb255(255, 51, 510, 0), Color::gray255(51), Color::cmyk(-1, 0.25, 3, 0.5, -4),
                       Color::lab(150, -200, 300)},
                      {Color(ColorSpace::RGB, {1, 0, 0.5}), Color(ColorSpace::RGB, {1, 0.2, 1}, 0), Color(ColorSpace::Gray, {0.2}),
                       Color(ColorSpace::CMYK, {0, 0.25, 1, 0.5}, 0), Color(ColorSpace::LAB, {150, -200, 300})});

    // HSB and HSL by degrees land in RGB.
    expectRGB(Color::hsbDegrees(120, 100, 50).rgb(), 0, 0.5, 0, 1);
    expectRGB(Color::hsbDegrees(400, 150, 100).rgb(), 1, 0, 0, 1);  // held at 360, 100, 100
    expectRGB(Color::hslDegrees(240, 100, 25).rgb(), 0, 0, 0.5, 1);
    EXPECT_EQ(Color::hsb(0.5, 1, 1).colorSpace, ColorSpace::RGB);
}

TEST(PalColorTest, EqualityHasAToleranceAndIgnoresTheId) {
    const Color a = Color::rgb(0.5, 0.5, 0.5, 1, "A");
    EXPECT_NE(a.id, Color::rgb(0.5, 0.5, 0.5, 1, "A").id);
    EXPECT_EQ(a, Color::rgb(0.5, 0.5, 0.5, 1, "A"));
    EXPECT_TRUE(a.isEqual(Color::rgb(0.5004, 0.5, 0.5, 1, "A"), 3));
    EXPECT_FALSE(a.isEqual(Color::rgb(0.502, 0.5, 0.5, 1, "A"), 3));
    EXPECT_TRUE(a == Color::rgb(0.5 + 5e-7, 0.5, 0.5, 1, "A"));
    EXPECT_FALSE(a == Color::rgb(0.5 + 5e-6, 0.5, 0.5, 1, "A"));
    EXPECT_FALSE(a == Color::rgb(0.5, 0.5, 0.5, 0.9, "A"));
    EXPECT_FALSE(a == Color::rgb(0.5, 0.5, 0.5, 1, "B"));
    EXPECT_FALSE(a == Color::rgb(0.5, 0.5, 0.5, 1, "A", ColorType::spot));
    EXPECT_FALSE(Color::gray(0.5) == Color(ColorSpace::Gray, {0.5, 0.5}));
    EXPECT_FALSE(Color::gray(0) == Color::rgb(0, 0, 0));
}

TEST(PalColorTest, SRGBToXYZAndLabUseTheirOwnConstants) {
    const XYZ xyz = rgbToXYZ({0.2, 0.4, 0.6, 1});
    expectNear({xyz.xf, xyz.yf, xyz.zf}, {11.866381097305737, 12.50645743288924, 31.925553853193296}, 1e-9);
    const LAB lab = Color::rgb(0.2, 0.4, 0.6).lab();
    expectNear({lab.lf, lab.af, lab.bf}, {42.00998577686647, -0.1447448120508732, -32.85151286536059}, 1e-9);

    // And back: the forward matrix and its inverse are close, not exact.
    expectRGB(xyzToRGB(labToXYZ(lab)), 0.2, 0.4, 0.6, 1, 2e-3);
}

TEST(PalColorTest, TheTwoLabThresholdsAreDifferent) {
    // 0.0088562 lies between the backward threshold (0.008856) and the forward one (0.008856451679035631).
    const double t = 0.0088562;
    // Forward: below its threshold, so the linear branch.
    EXPECT_NEAR(xyzToLAB({95.047, t * 100, 108.883, 1}).lf, 116 * (7.787 * t + 0.13793103448275862) - 16, 1e-12);
    // Backward: the cube is above its threshold, so the cube is taken.
    const double f = std::cbrt(t);
    EXPECT_NEAR(labToXYZ({116 * f - 16, 0, 0, 1}).yf, 100 * f * f * f, 1e-12);
}

TEST(PalColorTest, TheTwoInverseGammaExponentsAreDifferent) {
    // XYZ path: 1/2.4 written out in full. Only Y set, so green is 1.8758 Y / 100 in linear light.
    const double y = 50 / 1.8758, linearGreen = 1.8758 * (y / 100);
    const double green = xyzToRGB({0, y, 0, 1}).gf;
    EXPECT_NEAR(green, 1.055 * std::pow(linearGreen, 0.4166666666666667) - 0.055, 1e-12);
    EXPECT_GT(std::fabs(green - (1.055 * std::pow(linearGreen, 0.41666) - 0.055)), 1e-6);

    // OkLab path: the short 0.41666. L = cbrt(0.5) with a = b = 0 is a linear grey of 0.5 on each cone.
    const RGB grey = OkLab::toSRGB({std::cbrt(0.5), 0, 0});
    const double linear = 0.5 * (4.0767416621 - 3.3077115913 + 0.2309699292);
    EXPECT_NEAR(grey.rf, 1.055 * std::pow(linear, 0.41666) - 0.055, 1e-12);
    EXPECT_GT(std::fabs(grey.rf - (1.055 * std::pow(linear, 0.4166666666666667) - 0.055)), 1e-6);
}

TEST(PalColorTest, OkLabLinearisesAtTheThresholdByThePowerBranch) {
    const OkLab::Lab red = OkLab::fromSRGB({1, 0, 0, 1});
    expectNear({red.L, red.a, red.b}, {0.6279553606145516, 0.22486306106597398, 0.1258462985307351}, 1e-9);
    // At exactly 0.04045 the two linearisations part: OkLab takes the power, XYZ the division.
    const double atThreshold = 0.04045;
    const double powerBranch = std::pow((atThreshold + 0.055) / 1.055, 2.4);
    const double l = std::cbrt(0.4122214708 * powerBranch + 0.5363325363 * powerBranch + 0.0514459929 * powerBranch);
    EXPECT_NEAR(OkLab::fromSRGB({atThreshold, atThreshold, atThreshold, 1}).L,
                (0.2104542553 + 0.793617785 - 0.0040720468) * l, 1e-9);
    EXPECT_NEAR(rgbToXYZ({atThreshold, atThreshold, atThreshold, 1}).yf, atThreshold / 12.92 * 100, 1e-12);
}

TEST(PalColorTest, HSLAndHSBRoundTrip) {
    const HSL hsl = rgbToHSL({0.2, 0.4, 0.6, 0.7});
    expectNear({hsl.hf, hsl.sf, hsl.lf}, {210.0 / 360, 0.5, 0.4}, 1e-12);
    expectRGB(hslToRGB(hsl), 0.2, 0.4, 0.6, 0.7, 1e-12);
    EXPECT_EQ(rgbToHSL({0.3, 0.3, 0.3, 1}).sf, 0);  // grey has no saturation

    EXPECT_NEAR(Color::rgb(0.2, 0.4, 0.6).hsb().sf, 2.0 / 3, 1e-12);
    for (double hue : {0.0, 0.1, 0.3, 0.5, 0.7, 0.95})
        EXPECT_NEAR(rgbToHSB(hsbToRGB({hue, 0.8, 0.9, 1})).hf, hue, 1e-12) << hue;
}

TEST(PalColorTest, YCbCrUsesItsOwnMatrix) {
    const YCbCr white = rgbToYCbCr({1, 1, 1, 1});
    EXPECT_NEAR(white.y, 255, 1e-9);
    expectNear({white.cb, white.cr}, {128, 128}, 1e-3);
    const YCbCr red = Color::rgb(1, 0, 0).ycbcr();
    expectNear({red.y, red.cb}, {0.299 * 255, -0.1687 * 255 + 128}, 1e-9);
    EXPECT_EQ(red.cr, 255);  // 255.5, held at 255
    expectRGB(ycbcrToRGB(red), 1, 0, 0, 1, 5e-3);
}

TEST(PalColorTest, AccessorsConvertThroughTheSharedConverter) {
    // Gray is linear light: a linear 0.5 is sRGB 0.735.
    expectRGB(Color::gray(0.5, 0.25).rgb(), 0.7354, 0.7354, 0.7354, 0.25, 2e-3);
    EXPECT_NEAR(Color::rgb(0.7354, 0.7354, 0.7354).gray(), 0.5, 2e-3);

    // CMYK through the shipped profile: white has no ink, and a colour comes back near itself.
    const CMYK paper = Color::rgb(1, 1, 1).cmyk();
    EXPECT_NEAR(paper.cf + paper.mf + paper.yf + paper.kf, 0, 0.02);
    const Color orange = Color::rgb(0.9, 0.5, 0.2, 1, "Orange", ColorType::spot);
    const Color inCMYK = orange.converted(ColorSpace::CMYK);
    EXPECT_EQ(inCMYK.colorSpace, ColorSpace::CMYK);
    EXPECT_EQ(inCMYK.name, "Orange");
    EXPECT_EQ(inCMYK.colorType, ColorType::spot);
    expectRGB(inCMYK.rgb(), 0.9, 0.5, 0.2, 1, 0.05);

    // Lab D50 through the converter: white stays white.
    const auto labWhite = Color::rgb(1, 1, 1).converted(ColorSpace::LAB).colorComponents;
    expectNear({labWhite[0], labWhite[1]}, {100, 0}, 0.5);

    // lab() on a LAB colour clamps its own components.
    const LAB clamped = Color::lab(150, -200, 300, 0.5).lab();
    EXPECT_EQ((std::vector<double>{clamped.lf, clamped.af, clamped.bf, clamped.alphaf}), (std::vector<double>{100, -128, 128, 0.5}));

    // The same space is returned as it stands.
    EXPECT_EQ(orange.converted(ColorSpace::RGB).id, orange.id);
}

TEST(PalColorTest, AWrongComponentCountFailsInsteadOfGuessing) {
    const Color twoGrays(ColorSpace::Gray, {0.5, 0.5});
    expectCommonError(Case::cannotConvertColorSpace, [&] { twoGrays.converted(ColorSpace::RGB); });
    expectCommonError(Case::cannotConvertColorSpace, [&] { twoGrays.rgb(); });
    expectCommonError(Case::invalidColorComponentCountForModelType, [] { Color(ColorSpace::RGB, {1, 0}).rgb(); });
}

// Up to four components live in the colour; a coder may hand over more, which must survive copies and
// moves as well (the sanitizers watch the storage).
TEST(PalColorTest, ComponentsBeyondFourAreKeptToo) {
    const std::vector<double> five = {0.1, 0.2, 0.3, 0.4, 0.5};
    Color many(ColorSpace::CMYK, five);
    Color copy = many;
    Color moved = std::move(copy);
    copy = moved;
    moved = Color::gray(0.5);
    moved = many;
    for (const Color* color : {&many, &copy, &moved}) EXPECT_EQ(color->colorComponents, five);
    EXPECT_EQ(std::vector<double>(many.colorComponents), five);
    moved.colorComponents[4] = 1;
    EXPECT_FALSE(moved.colorComponents == many.colorComponents);
    expectCommonError(Case::invalidColorComponentCountForModelType, [&] { many.cmyk(); });
}

TEST(PalColorTest, HueFamiliesAreRGBWithoutAlphaOrName) {
    const auto hues = [](const std::vector<Color>& colors) {
        std::vector<double> degrees;
        for (const auto& color : colors) degrees.push_back(std::round(color.hsl().hf * 360 * 1e6) / 1e6);
        return degrees;
    };
    const Color red = Color::rgb(1, 0, 0, 0.5, "Red");
    expectRGB(red.complementary().rgb(), 0, 1, 1, 0.5);  // alpha kept
    const auto triadic = red.triadic();
    EXPECT_EQ(hues(triadic), (std::vector<double>{0, 120, 240}));
    expectRGB(triadic[1].rgb(), 0, 1, 0, 1);
    EXPECT_TRUE(triadic[2].name.empty());
    EXPECT_EQ(hues(red.analogous()), (std::vector<double>{330, 0, 30}));  // -30 wraps round
    EXPECT_EQ(hues(red.splitComplementary()), (std::vector<double>{150, 180, 210}));
    EXPECT_EQ(hues(red.tetradic()), (std::vector<double>{330, 30, 150, 210}));
    EXPECT_EQ(red.colorComponents, (std::vector<double>{1, 0, 0}));  // the source is untouched
}

TEST(PalColorTest, MonochromaticStopsAndTheirSpan) {
    const Color blue = Color::hsb(0.6, 1.0, 0.2);
    const auto shades = blue.monochromatic(MonochromeStyle::brightness, 0.2, 5);
    ASSERT_EQ(shades.size(), 5u);
    EXPECT_NEAR(shades[4].hsb().bf, 1.0, 1e-9);
    EXPECT_NEAR(shades[4].hsb().hf, 0.6, 1e-9);
    try {
        blue.monochromatic(MonochromeStyle::saturation, -0.3, 5);
        ADD_FAILURE() << "expected monochromaticSpanTooLarge";
    } catch (const FunctionError& error) {
        EXPECT_EQ(error.errorCase(), FunctionError::Case::monochromaticSpanTooLarge);
    }
}

TEST(PalColorTest, LuminanceContrastAndTextColour) {
    EXPECT_NEAR(Color::rgb(1, 1, 1).relativeLuminance(), 1, 1e-12);
    EXPECT_NEAR(Color::rgb(1, 1, 1).contrastRatio(Color::rgb(0, 0, 0)), 21, 1e-9);
    EXPECT_NEAR(Color::rgb(0, 0, 0).contrastRatio(Color::rgb(1, 1, 1)), 21, 1e-9);
    // Luminance 0.179 is the turning point: above it dark text, at or below light.
    EXPECT_TRUE(Color::rgb(0.47, 0.47, 0.47).prefersDarkText());   // 0.1878
    EXPECT_FALSE(Color::rgb(0.46, 0.46, 0.46).prefersDarkText());  // 0.1779
    expectRGB(Color::rgb(0.2, 0.2, 0.2).textColor().rgb(), 1, 1, 1, 1);
    expectRGB(Color::rgb(0.2, 0.5, 0.9, 0.4).contrastAdjusted(2).rgb(), 0, 0.5, 1, 0.4, 1e-12);
}

TEST(PalColorTest, MixingInTheSameSpaceDifferentSpacesAndOkLab) {
    const Color a = Color::cmyk(0, 0.2, 0.4, 0.6, 1, "A", ColorType::spot), b = Color::cmyk(1, 0.4, 0.4, 0.2, 0);
    const Color half = a.mix(b, 0.5);
    EXPECT_EQ(half.colorSpace, ColorSpace::CMYK);
    EXPECT_EQ(half.colorType, ColorType::global);
    EXPECT_EQ(half.colorComponents, (std::vector<double>{0.5, 0.30000000000000004, 0.4, 0.4}));
    EXPECT_EQ(half.alpha, 0.5);
    EXPECT_EQ(a.mix(b, 7).colorComponents, b.colorComponents);  // t held at 1

    const Color mixed = Color::rgb(1, 0, 0).mix(Color::gray(1), 0.5);
    EXPECT_EQ(mixed.colorSpace, ColorSpace::RGB);
    expectRGB(mixed.rgb(), 1, 0.5, 0.5, 1, 1e-3);

    const Color ok = Color::rgb(1, 0, 0, 0.3).mixOkLab(Color::rgb(0, 0, 1), 0.5, "Middle");
    expectRGB(ok.rgb(), 0.5504464467223786, 0.3256268934004136, 0.6365053273417405, 1, 1e-9);
    EXPECT_EQ(ok.name, "Middle");
}

TEST(PalColorTest, ColorAtWalksTheStops) {
    const std::vector<Color> stops = {Color::rgb(0, 0, 0), Color::rgb(1, 0, 0), Color::rgb(1, 1, 1)};
    expectCommonError(Case::tooFewColors, [] { colorAt({}, 0.5); });
    EXPECT_EQ(colorAt(stops, 5e-9).id, stops[0].id);
    EXPECT_EQ(colorAt(stops, 1 - 5e-9).id, stops[2].id);
    expectRGB(colorAt(stops, 0.25).rgb(), 0.5, 0, 0, 1, 1e-12);
    expectRGB(colorAt(stops, 0.75).rgb(), 1, 0.5, 0.5, 1, 1e-12);
    EXPECT_EQ(colorAt({stops[1]}, 0.7).id, stops[1].id);
    EXPECT_EQ(colorAt(stops, 3.0).id, stops[2].id);
}

TEST(PalColorTest, InterpolatedStepsIncludeBothEnds) {
    expectCommonError(Case::tooFewColors, [] { interpolated(Color::rgb(0, 0, 0), Color::rgb(1, 1, 1), 0); });
    const auto steps = interpolated(Color::rgb(0, 0, 0), Color::gray(1, 0), 5);
    ASSERT_EQ(steps.size(), 5u);
    expectRGB(steps[1].rgb(), 0.25, 0.25, 0.25, 0.75, 1e-6);
    expectRGB(steps[4].rgb(), 1, 1, 1, 0, 1e-6);
    EXPECT_EQ(interpolated(Color::rgb(0.5, 0, 0), Color::rgb(1, 1, 1), 1).size(), 1u);
}

TEST(PalColorTest, TextForms) {
    const Color color = Color::rgb(1, 0.5, 0, 0.12345, "Amber", ColorType::spot);
    EXPECT_EQ(color.css(), "rgba(255, 128, 0, 0.123)");
    EXPECT_EQ(Color::rgb(1, 0.5, 0).css(), "rgba(255, 128, 0, 1.0)");
    EXPECT_EQ(color.cssRGB(), "255, 128, 0");
    EXPECT_EQ(color.debugDescription(), "Color 'Amber' [(RGB:spot:1.0,0.5,0.0:0.123]");
}

// The form with every default left out is checked by the JSON coder's exact output.
TEST(PalColorTest, JsonWritesWhatIsNotADefault) {
    const Color full = Color::cmyk(0.1, 0.2, 0.3, 0.4, 0.5, "Ink", ColorType::spot);
    EXPECT_EQ(full.json().dump(),
              R"({"name":"Ink","colorSpace":"CMYK","colorComponents":[0.1,0.2,0.3,0.4],"colorType":"spot","alpha":0.5})");
    EXPECT_EQ(Color::fromJson(full.json()), full);
    const Color read = Color::fromJson(kro::Json::parse(R"({"colorSpace":"Gray","colorComponents":[0.25]})"));
    EXPECT_EQ(read, Color::gray(0.25));
}

TEST(PalColorTest, JsonErrors) {
    const auto fromText = [](const char* text) { return [text] { Color::fromJson(kro::Json::parse(text)); }; };
    for (const char* text : {R"([1,2])", R"({"colorComponents":[1]})", R"({"colorSpace":"RGB","colorComponents":[1,"x",1]})",
                             R"({"colorSpace":"RGB","colorComponents":[1,1,1],"colorType":"pantone"})",
                             R"({"colorSpace":"RGB","colorComponents":[1,1,1],"alpha":"1"})",
                             R"({"name":7,"colorSpace":"RGB","colorComponents":[1,1,1]})"})
        expectCommonError(Case::invalidFormat, fromText(text));
    expectCommonError(Case::unknownColorMode, fromText(R"({"colorSpace":"HSV","colorComponents":[1,1,1]})"));
    expectCommonError(Case::invalidColorComponentCountForModelType, fromText(R"({"colorSpace":"RGB","colorComponents":[1]})"));
}

TEST(PalColorTest, ErrorsSayWhatWasFound) {
    EXPECT_STREQ(CommonError(Case::unknownColorMode, std::string("HSV")).what(), "PAL.CommonError.unknownColorMode(\"HSV\")");
    // The two similarly named cases stay apart.
    EXPECT_NE(caseName(Case::unsupportedColorspace), caseName(Case::unsupportedColorSpace));
}
