// Our own two gradient forms, JSON and DCG: everything the model holds comes back.
#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "GradientTestSupport.h"

using namespace PAL;
using namespace gradienttest;
using Case = CommonError::Case;

namespace {

// Several gradients, every colour space, names, types, alpha and a hard edge.
Gradients everything() {
    Gradient mixed{"Mixed spaces ✓", {}};
    mixed.stops.push_back({0, Color::cmyk(0.1, 0.2, 0.3, 0.4, 0.5, "Ink", ColorType::spot)});
    mixed.stops.push_back({0.4, Color::lab(50, -20, 30, 1, "", ColorType::normal)});
    mixed.stops.push_back({0.4, Color::gray(0.25, 0)});
    mixed.stops.push_back({1, Color::rgb(0.1, 0.2, 0.3, 0.123456789)});
    return gradients({ember(), mixed, gradient("", {{0.5, "abcdef"}})});
}

void expectIdentical(const Gradients& actual, const Gradients& expected) {
    ASSERT_EQ(actual.gradients.size(), expected.gradients.size());
    for (std::size_t g = 0; g < expected.gradients.size(); ++g) {
        const auto& a = actual.gradients[g];
        const auto& e = expected.gradients[g];
        EXPECT_EQ(a.name, e.name);
        ASSERT_EQ(a.stops.size(), e.stops.size());
        for (std::size_t s = 0; s < e.stops.size(); ++s) {
            EXPECT_EQ(a.stops[s].position, e.stops[s].position);
            expectExactColors({a.stops[s].color}, {e.stops[s].color});
        }
    }
}

}  // namespace

TEST(JSONGradientsCoderTest, RoundTripsEverythingTheModelHolds) {
    expectIdentical(decode(GradientsFormat::json, encode(GradientsFormat::json, everything())), everything());
}

TEST(JSONGradientsCoderTest, WritesTheDocumentedForm) {
    EXPECT_EQ(encode(GradientsFormat::json, gradients({gradient("Dusk", {{0, "000000"}, {1, "ffffff", 0.5}})})),
              "{\n"
              "  \"gradients\": [\n"
              "    {\n"
              "      \"name\": \"Dusk\",\n"
              "      \"stops\": [\n"
              "        {\n"
              "          \"position\": 0.0,\n"
              "          \"color\": {\n"
              "            \"colorSpace\": \"RGB\",\n"
              "            \"colorComponents\": [\n"
              "              0.0,\n"
              "              0.0,\n"
              "              0.0\n"
              "            ]\n"
              "          }\n"
              "        },\n"
              "        {\n"
              "          \"position\": 1.0,\n"
              "          \"color\": {\n"
              "            \"colorSpace\": \"RGB\",\n"
              "            \"colorComponents\": [\n"
              "              1.0,\n"
              "              1.0,\n"
              "              1.0\n"
              "            ],\n"
              "            \"alpha\": 0.5\n"
              "          }\n"
              "        }\n"
              "      ]\n"
              "    }\n"
              "  ]\n"
              "}\n");
}

TEST(JSONGradientsCoderTest, ReadsOneGradientAloneAndSortsItsStops) {
    const Gradients one =
        decode(GradientsFormat::json, R"({"stops":[{"position":1,"color":{"colorSpace":"RGB","colorComponents":[1,1,1]}},)"
                                      R"({"position":0,"color":{"colorSpace":"Gray","colorComponents":[0]}}]})");
    ASSERT_EQ(one.gradients.size(), 1u);
    EXPECT_EQ(one.gradients[0].name, "");
    expectStops(one.gradients[0], {{0, "000000"}, {1, "ffffff"}});
}

TEST(JSONGradientsCoderTest, RefusesWhatIsNotAGradient) {
    for (const char* text : {"", "[]", "{}", R"({"gradients":[]})", R"({"gradients":[{"stops":[]}]})",
                             R"({"stops":[{"color":{"colorSpace":"RGB","colorComponents":[1,1,1]}}]})",
                             R"({"stops":[{"position":"0","color":{"colorSpace":"RGB","colorComponents":[1,1,1]}}]})",
                             R"({"stops":[{"position":0,"color":{"colorSpace":"RGB","colorComponents":[1,1]}}]})",
                             R"({"name":3,"stops":[{"position":0,"color":{"colorSpace":"RGB","colorComponents":[1,1,1]}}]})"})
        EXPECT_TRUE(binarytest::commonError([text] { decode(GradientsFormat::json, text); })) << text;
    expectCommonError(Case::notEnoughColorsToGenerateGradient, [] { encode(GradientsFormat::json, Gradients{}); });
}

TEST(DCGCoderTest, RoundTripsEverythingTheModelHolds) {
    expectIdentical(decode(GradientsFormat::dcg, encode(GradientsFormat::dcg, everything())), everything());
}

TEST(DCGCoderTest, WritesTheDocumentedBytes) {
    Gradient g{"Hi", {{0, Color::rgb(1, 0, 0)}, {1, Color::gray(0.5, 0.5, "G", ColorType::spot)}}};
    EXPECT_EQ(binarytest::hexOf(encode(GradientsFormat::dcg, gradients({g}))),
              "44 43 47 52 01 00 01 00 00 00 "  // magic, version 1, 1 gradient
              "02 00 00 00 48 69 02 00 00 00 "  // "Hi", 2 stops
              "00 00 00 00 00 00 00 00 01 03 "  // position 0, RGB, 3 components
              "00 00 00 00 00 00 F0 3F 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 F0 3F 00 00 00 00 00 "                              // alpha 1, global, no name
              "00 00 00 00 00 00 F0 3F 03 01 "                                       // position 1, Gray, 1 component
              "00 00 00 00 00 00 E0 3F 00 00 00 00 00 00 E0 3F 01 01 00 00 00 47");  // 0.5, alpha 0.5, spot, "G"
}

TEST(DCGCoderTest, RefusesDamagedFilesWithoutAllocatingFromTheirCounts) {
    const std::string good = encode(GradientsFormat::dcg, gradients({ember()}));
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_TRUE(binarytest::commonError([&] { decode(GradientsFormat::dcg, good.substr(0, length)); })) << length;
    expectCommonError(Case::invalidFormat, [&] { decode(GradientsFormat::dcg, good + "x"); });
    expectCommonError(Case::invalidVersion, [&] { decode(GradientsFormat::dcg, std::string(good).replace(4, 1, "\x02")); });
    // A count of four billion gradients, or of stops, with a few bytes behind it.
    expectCommonError(Case::invalidFormat,
                      [&] { decode(GradientsFormat::dcg, binarytest::hexBytes("44434752 0100 FFFFFFFF 00000000")); });
    expectCommonError(Case::invalidFormat, [&] {
        decode(GradientsFormat::dcg, binarytest::hexBytes("44434752 0100 01000000 00000000 FFFFFFFF 0000"));
    });
    // A colour whose component count does not fit its space, a name that is not UTF-8, a position that is not a number.
    std::string badCount = good;
    badCount[32] = 4;
    expectCommonError(Case::invalidFormat, [&] { decode(GradientsFormat::dcg, badCount); });
    std::string badName = good;
    badName[15] = '\xFF';
    expectCommonError(Case::invalidFormat, [&] { decode(GradientsFormat::dcg, badName); });
    std::string notANumber = good;
    notANumber.replace(23, 8, binarytest::hexBytes("000000000000F87F"));
    expectCommonError(Case::invalidFormat, [&] { decode(GradientsFormat::dcg, notANumber); });
}
