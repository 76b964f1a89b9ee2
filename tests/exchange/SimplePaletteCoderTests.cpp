#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using binarytest::expectComponents;
using Case = CommonError::Case;

const auto simpleCoder = coder(PaletteFormat::simplePalette);

// Linear components to five decimals, tab-indented as JSON.stringify(palette, undefined, '\t') lays it out.
TEST(SimplePaletteCoderTest, WritesWhatTheReferenceWriterWrites) {
    const Palette palette("Harbour", {Color::rgb255(26, 101, 151, 255, "Sea")},
                          {Group("Flattened", {Color::rgb255(255, 111, 97, 127.5)})});
    EXPECT_EQ(simpleCoder->encode(palette),
              "{\n"
              "\t\"name\": \"Harbour\",\n"
              "\t\"colors\": [\n"
              "\t\t{\n"
              "\t\t\t\"name\": \"Sea\",\n"
              "\t\t\t\"components\": [\n"
              "\t\t\t\t0.01033,\n"
              "\t\t\t\t0.13014,\n"
              "\t\t\t\t0.30947\n"
              "\t\t\t]\n"
              "\t\t},\n"
              "\t\t{\n"
              "\t\t\t\"components\": [\n"
              "\t\t\t\t1,\n"
              "\t\t\t\t0.15896,\n"
              "\t\t\t\t0.11954,\n"
              "\t\t\t\t0.5\n"
              "\t\t\t]\n"
              "\t\t}\n"
              "\t]\n"
              "}");
    EXPECT_EQ(simpleCoder->encode(Palette()), "{\n\t\"colors\": []\n}");
}

TEST(SimplePaletteCoderTest, ReadsWhatItWritesIncludingColoursOutsideSRGB) {
    const std::string file = R"({"name":"Wide","colors":[{"name":"Sea","components":[0.01033,0.13014,0.30947]},)"
                             R"({"name":"","components":[1.2,-0.05,0.5,0.4]}]})";
    const Palette palette = simpleCoder->decode(file);
    EXPECT_EQ(palette.name, "Wide");
    ASSERT_EQ(palette.colors.size(), 2u);
    EXPECT_EQ(palette.colors[0].name, "Sea");
    EXPECT_EQ(palette.colors[0].hexString(), "1a6597");
    EXPECT_TRUE(palette.colors[1].name.empty());
    // Outside sRGB is kept, not clamped, and written back as it was read.
    const Palette back = simpleCoder->decode(simpleCoder->encode(palette));
    ASSERT_EQ(back.colors.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) expectComponents(back.colors[i], ColorSpace::RGB, palette.colors[i].colorComponents, 1e-9);
    EXPECT_NE(simpleCoder->encode(back).find("1.2,\n\t\t\t\t-0.05,\n\t\t\t\t0.5,\n\t\t\t\t0.4\n"), std::string::npos);
}

TEST(SimplePaletteCoderTest, RoundsToFiveDecimalsHalfToEven) {
    const auto written = [](const std::string& linear) {
        const auto color = simpleCoder->decode(R"({"colors":[{"components":[)" + linear + ",0,0]}]}");
        const std::string text = simpleCoder->encode(Palette("", {color.colors.at(0)}));
        const auto start = text.find("[\n\t\t\t\t") + 6;
        return text.substr(start, text.find(',', start) - start);
    };
    EXPECT_EQ(written("0.123445"), "0.12344");
    EXPECT_EQ(written("0.123455"), "0.12346");
    EXPECT_EQ(written("-0.000015"), "-0.00002");
    EXPECT_EQ(written("0.5e0"), "0.5");
}

TEST(SimplePaletteCoderTest, ReadsLenientlyAndRefusesWhatIsNotAPalette) {
    const Palette palette = simpleCoder->decode(R"({"colors":[{"components":[0,0,0,1.5],"extra":1}],"version":"0.2"})");
    ASSERT_EQ(palette.colors.size(), 1u);
    EXPECT_EQ(palette.colors[0].alpha, 1);  // opacity held to 0...1
    EXPECT_TRUE(simpleCoder->decode(R"({"colors":[]})").colors.empty());
    // A colour another format held far outside any range is written in range rather than as a
    // number that overflows.
    const Palette huge("", {Color(ColorSpace::RGB, {1e300, -1e300, 0.5})});
    expectComponents(simpleCoder->decode(simpleCoder->encode(huge)).colors.at(0), ColorSpace::RGB, {1, 0, 0.5}, 1e-5);

    for (const char* text : {"", "[]", R"({"name":"x"})", R"({"colors":{}})", R"({"colors":[{"name":"x"}]})",
                             R"({"colors":[{"components":[1,0]}]})", R"({"colors":[{"components":[1,0,0,1,1]}]})",
                             R"({"colors":[{"components":[1,"0",0]}]})", R"({"colors":["#ff0000"]})",
                             R"({"colors":[{"components":[1e300,0,0]}]})"})
        expectCommonError(Case::invalidFormat, [text] { simpleCoder->decode(text); });
}
