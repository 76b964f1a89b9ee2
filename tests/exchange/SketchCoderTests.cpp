#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto sketchCoder = coder(PaletteFormat::sketch);

TEST(SketchCoderTest, WritesWhatThePluginWritesAndReadsItBack) {
    const Palette palette("Ignored", {Color::rgb255(26, 101, 151, 255, "Ünïcode ✓")},
                          {Group("Flattened", {Color::rgb(1, 111 / 255.0, 97 / 255.0, 0.5)})});
    const std::string text = sketchCoder->encode(palette);
    EXPECT_EQ(text,
              R"({"compatibleVersion":"2.0","pluginVersion":"2.22","colors":[)"
              R"({"name":"Ünïcode ✓","red":0.10196078431372549,"green":0.396078431372549,"blue":0.592156862745098,"alpha":1},)"
              R"({"name":null,"red":1,"green":0.43529411764705883,"blue":0.3803921568627451,"alpha":0.5}],"gradients":[],"images":[]})");
    EXPECT_EQ(sketchCoder->decode(text).colors, palette.allColors());
}

TEST(SketchCoderTest, ReadsEveryVersionOfThePlugin) {
    // 1.0 to 1.3 wrote CSS colour strings; the first element decides when the version is missing.
    const Palette legacy = sketchCoder->decode(
        R"j({"compatibleVersion":"1.0","pluginVersion":"1.1","colors":["#1A6597"," #f80 ","#FF000080","rgb(1, 2, 3)","rgba(255,0,0,0.5)"]})j");
    EXPECT_EQ(legacy.colors, (std::vector<Color>{Color::rgb255(26, 101, 151), Color::rgb255(255, 136, 0), Color::rgb255(255, 0, 0, 128),
                                                 Color::rgb255(1, 2, 3), Color::rgb(1, 0, 0, 0.5)}));

    // 1.4 wrote unnamed objects; 2.x adds names (null when unnamed), gradients and images; design-token
    // tools write numeric strings.
    const Palette objects = sketchCoder->decode(
        "\xEF\xBB\xBF{\"compatibleVersion\":\"2.0\",\"pluginVersion\":\"2.2\",\"colors\":["
        R"({"red":0.5,"green":0,"blue":1,"alpha":0.25},)"
        R"({"name":null,"red":"0.50196","green":" 1 ","blue":0,"alpha":1},)"
        R"({"name":"Hot","red":1.5,"green":-1,"blue":0},)"
        R"({"name":""}],)"
        R"("gradients":[{"_class":"gradient","name":"g","gradientType":0,"stops":[]}],"images":[{"data":"AAAA"}],"future":true})");
    // Values are held to 0...1; a missing alpha is 1.
    EXPECT_EQ(objects.colors, (std::vector<Color>{Color::rgb(0.5, 0, 1, 0.25), Color::rgb(0.50196, 1, 0), Color::rgb(1, 0, 0, 1, "Hot"),
                                                  Color::rgb(0, 0, 0)}));
}

TEST(SketchCoderTest, RefusesWhatIsNotASketchPalette) {
    for (const char* text : {"", "{", "[]", R"({"compatibleVersion":"2.0"})", R"({"colors":{}})", R"({"colors":[1]})",
                             R"({"colors":["tomato"]})", R"({"colors":["#12345"]})", R"j({"colors":["rgb(1,2)"]})j",
                             R"({"colors":[{"red":true}]})", R"({"colors":[{"red":"half"}]})"})
        expectCommonError(Case::invalidFormat, [text] { sketchCoder->decode(text); });
}
