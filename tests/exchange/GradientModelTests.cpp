#include <gtest/gtest.h>

#include <cmath>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "GradientTestSupport.h"
#include "exchange/gradients/GRDTracks.h"
#include "exchange/gradients/GradientSampling.h"

using namespace PAL;
using namespace gradienttest;
using Case = CommonError::Case;

TEST(GradientModelTest, NormalizingSortsStablyClampsAndKeepsOnlyTheVisibleStopsOfAPosition) {
    Gradient g =
        gradient("", {{0.5, "0000ff"}, {1.5, "ffffff"}, {0.5, "00ff00"}, {-1, "000000"}, {0.5, "ff0000"}, {0.5, "ffff00"}});
    g.normalize();
    // Four stops at 0.5: the first and last in file order remain, a hard edge from blue to yellow.
    expectStops(g, {{0, "000000"}, {0.5, "0000ff"}, {0.5, "ffff00"}, {1, "ffffff"}});
}

TEST(GradientModelTest, ColourAtPadsTheEndsMixesBetweenStopsAndTakesTheLaterColourOfAHardEdge) {
    const Gradient g = gradient("", {{0.25, "000000", 0}, {0.5, "ffffff", 1}, {0.5, "ff0000"}, {0.75, "0000ff"}});
    EXPECT_TRUE(sameRGBA(g.colorAt(0), {0, 0, 0, 0}));
    EXPECT_TRUE(sameRGBA(g.colorAt(0.375), {0.5, 0.5, 0.5, 0.5}));
    EXPECT_TRUE(sameRGBA(g.colorAt(0.5), {1, 0, 0, 1}));
    EXPECT_TRUE(sameRGBA(g.colorAt(0.625), {0.5, 0, 0.5, 1}));
    EXPECT_TRUE(sameRGBA(g.colorAt(1), {0, 0, 1, 1}));
    expectCommonError(Case::notEnoughColorsToGenerateGradient, [] { (void)Gradient{}.colorAt(0.5); });
}

TEST(GradientModelTest, WritersGetStopsSpanningTheRangeAndRefuseEmptyGradients) {
    const auto stops = spanningStops(gradient("", {{0.3, "ff0000"}}));
    ASSERT_EQ(stops.size(), 3u);
    EXPECT_EQ(stops[0].position, 0);
    EXPECT_EQ(stops[2].position, 1);
    EXPECT_EQ(stops[0].color, stops[2].color);
    expectCommonError(Case::notEnoughColorsToGenerateGradient, [] { writableStops(Gradient{}); });
    expectCommonError(Case::notEnoughColorsToGenerateGradient, [] { onlyGradient(Gradients{}); });
    expectCommonError(Case::invalidFormat, [] { onlyGradient(gradients({ember(), ember()})); });
}

TEST(GradientModelTest, SampledCurvesStayWithinAByteOfTheCurveAndStraightRunsCollapse) {
    const auto curve = [](double p) { return RGB{std::pow(p, 3), std::sin(p * 3.14159), 1 - p, 1}; };
    StopList list;
    list.addSampled(0.2, 0.6, curve);
    Gradient g{"", list.take()};
    ASSERT_GT(g.stops.size(), 8u);
    EXPECT_LE(g.stops.size(), 257u);
    EXPECT_DOUBLE_EQ(g.stops.front().position, 0.2);
    EXPECT_DOUBLE_EQ(g.stops.back().position, 0.6);
    for (int i = 0; i <= 1000; ++i) {
        const double p = i / 1000.0;
        const RGB expected = curve(p), actual = g.colorAt(0.2 + 0.4 * p);
        ASSERT_NEAR(actual.rf, expected.rf, 1.5 / 255) << p;
        ASSERT_NEAR(actual.gf, expected.gf, 1.5 / 255) << p;
    }
    StopList straight;
    straight.addSampled(0, 1, [](double p) { return RGB{p, p, p, 1}; });
    EXPECT_EQ(straight.take().size(), 2u);
}

TEST(GradientModelTest, SeparateColourAndOpacityTracksFlattenIntoStops) {
    const RGB red{1, 0, 0, 1}, blue{0, 0, 1, 1};
    const auto opacity = [](double a) { return RGB{0, 0, 0, a}; };
    // Opacity stops between colour stops become stops of their own; ends are held flat.
    auto stops = flattenedTracks({{0.2, 0.5, red}, {1, 0.5, blue}}, {{0, 0.5, opacity(1)}, {0.6, 0.5, opacity(0)}},
                                 MidpointOwner::endingStop);
    Gradient g{"", stops};
    expectStops(g, {{0, "ff0000", 1}, {0.2, "ff0000", 2.0 / 3}, {0.6, "800080", 0}, {1, "0000ff", 0}}, 0.003);

    // A hard edge in one track splits the stop; a stop on the straight line between its neighbours goes.
    stops = flattenedTracks({{0, 0.5, red}, {0.5, 0.5, red}, {0.5, 0.5, blue}, {1, 0.5, blue}}, {}, MidpointOwner::endingStop);
    expectStops(Gradient{"", stops}, {{0, "ff0000"}, {0.5, "ff0000"}, {0.5, "0000ff"}, {1, "0000ff"}});
    stops = flattenedTracks({{0, 0.5, red}, {0.5, 0.5, RGB{0.5, 0, 0.5, 1}}, {1, 0.5, blue}}, {}, MidpointOwner::endingStop);
    EXPECT_EQ(stops.size(), 2u);

    // An off-centre midpoint adds the mean colour there; which stop holds it depends on the file's version.
    stops = flattenedTracks({{0, 0.25, red}, {1, 0.5, blue}}, {}, MidpointOwner::startingStop);
    expectStops(Gradient{"", stops}, {{0, "ff0000"}, {0.25, "800080"}, {1, "0000ff"}}, 0.003);
    stops = flattenedTracks({{0, 0.25, red}, {1, 0.5, blue}}, {}, MidpointOwner::endingStop);
    EXPECT_EQ(stops.size(), 2u);
}

TEST(GradientFrameTest, EveryFormatHasItsCoderAndDoesWhatTheTableSays) {
    ASSERT_EQ(allGradientsCoders().size(), 11u);
    const Gradients sample = gradients({ember()});
    for (const auto& coder : allGradientsCoders()) {
        const auto& info = PAL::info(coder->format());
        if (coder->writes()) {
            const std::string bytes = coder->encode(sample);
            EXPECT_FALSE(bytes.empty()) << info.caseName;
            if (coder->reads()) {
                EXPECT_EQ(coder->decode(bytes).format, coder->format()) << info.caseName;
            }
        } else {
            binarytest::LogCapture log;
            expectCommonError(Case::notImplemented, [&] { coder->encode(sample); });
            EXPECT_TRUE(log.contains(coder->name() + ": encode() not implemented", LogLevel::error));
        }
        if (!coder->reads()) expectCommonError(Case::notImplemented, [&] { coder->decode(std::string_view("anything")); });
    }
}

TEST(GradientFrameTest, TheTrialTriesEveryCoderOfTheExtensionAndSaysWhyItFailed) {
    const std::string ggr = encode(GradientsFormat::gimp, gradients({ember()}));
    EXPECT_EQ(decodeGradients(ggr, "GGR").format, GradientsFormat::gimp);
    expectCommonError(Case::unsupportedCoderType, [&] { decodeGradients(ggr, "gpl"); });
    expectCommonError(Case::unsupportedPaletteType, [&] { decodeGradients(std::string_view("nonsense"), "ggr"); });
    // Both .swift writers refuse to read.
    expectCommonError(Case::unsupportedPaletteType, [&] { decodeGradients(ggr, "swift"); });
}

TEST(GradientFrameTest, FilesAreReadByPathAndAnUnnamedGradientTakesTheFileName) {
    const ScratchFolder folder;
    writeFile(folder / "Warm Sky.gpf", "0 1 0 0\n1 0 0 1\n");
    writeFile(folder / "named.ggr", encode(GradientsFormat::gimp, gradients({ember()})));
    EXPECT_EQ(decodeGradients((folder / "Warm Sky.gpf").string()).gradients.at(0).name, "Warm Sky");
    EXPECT_EQ(decodeGradients((folder / "named.ggr").string()).gradients.at(0).name, "Ember");
    const auto json = coder(GradientsFormat::json);
    expectCommonError(Case::unsupportedPaletteType, [&] { decodeGradients((folder / "named.ggr").string(), json.get()); });
    expectCommonError(Case::unableToLoadFile, [&] { decodeGradients((folder / "missing.ggr").string()); });
    expectCommonError(Case::unableToLoadFile, [&] { decodeGradients(folder.path().string(), json.get()); });
}
