#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/coders/JSONCoder.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

Palette sample() {
    return Palette("Brand", {Color::rgb(1, 0, 0, 1, "Red")},
                   {Group("Print", {Color::cmyk(0, 0.5, 1, 0, 1, "Spot orange", ColorType::spot), Color::lab(50, 20, -30, 0.5)}),
                    Group("", {Color::gray(0.25)})});
}

}  // namespace

TEST(JSONCoderTest, WritesTheLayersJsonForm) {
    JSONCoder coder;
    coder.prettyPrint = false;
    EXPECT_EQ(coder.encode(Palette("Tiny", {Color::rgb(1, 0, 0)})),
              R"({"name":"Tiny","colors":[{"colorSpace":"RGB","colorComponents":[1.0,0.0,0.0]}],"groups":[]})");
    coder.prettyPrint = true;
    EXPECT_EQ(coder.encode(Palette("Tiny")), "{\n  \"name\": \"Tiny\",\n  \"colors\": [],\n  \"groups\": []\n}\n");
}

TEST(JSONCoderTest, RoundTripKeepsSpacesGroupsTypesAndAlpha) {
    const JSONCoder coder;
    const Palette back = coder.decode(coder.encode(sample()));
    EXPECT_EQ(back.name, "Brand");
    EXPECT_EQ(back.format, PaletteFormat::json);
    EXPECT_EQ(back.colors, sample().colors);
    ASSERT_EQ(back.groups.size(), 2u);
    EXPECT_EQ(back.groups[0].name, "Print");
    EXPECT_EQ(back.groups[0].colors, sample().groups[0].colors);
    EXPECT_EQ(back.groups[1].colors, sample().groups[1].colors);
}

TEST(JSONCoderTest, ReadsWithAByteOrderMarkAndDefaults) {
    const Palette palette = JSONCoder().decode(std::string_view(
        "\xEF\xBB\xBF{\"colors\":[{\"colorSpace\":\"LAB\",\"colorComponents\":[50,-20,10],\"colorType\":\"normal\"}]}"));
    EXPECT_TRUE(palette.name.empty());
    ASSERT_EQ(palette.colors.size(), 1u);
    EXPECT_EQ(palette.colors[0], Color::lab(50, -20, 10, 1, "", ColorType::normal));
}

TEST(JSONCoderTest, RefusesWhatIsNotItsForm) {
    const JSONCoder coder;
    for (const char* text : {"", "{", "[]", "GIMP Palette\n", R"({"name":"x"})",
                             R"({"colors":[{"colorSpace":"RGB","colorComponents":[1,1]}]})"})
        EXPECT_THROW(coder.decode(std::string_view(text)), CommonError) << text;
    expectCommonError(Case::unknownColorMode, [&] {
        coder.decode(std::string_view(R"({"colors":[{"colorSpace":"XYZ","colorComponents":[1,1,1]}]})"));
    });
}

TEST(JSONCoderTest, TextThatIsNotUTF8IsWrittenAnyway) {
    const std::string text = JSONCoder().encode(Palette("Caf\xE9"));
    EXPECT_NE(text.find("Caf\xEF\xBF\xBD"), std::string::npos);
}
