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

// The same form as the model's own JSON: defaults are left out and a group's name may be absent.
TEST(JSONCoderTest, WritesTheLayersJsonForm) {
    JSONCoder coder;
    coder.prettyPrint = false;
    EXPECT_EQ(coder.encode(Palette("P", {Color::rgb(1, 0, 0)}, {Group("G", {Color::gray(0.5, 0.5)})})),
              R"({"name":"P","colors":[{"colorSpace":"RGB","colorComponents":[1.0,0.0,0.0]}],)"
              R"("groups":[{"name":"G","colors":[{"colorSpace":"Gray","colorComponents":[0.5],"alpha":0.5}]}]})");
    coder.prettyPrint = true;
    EXPECT_EQ(coder.encode(Palette("Tiny")), "{\n  \"name\": \"Tiny\",\n  \"colors\": [],\n  \"groups\": []\n}\n");
}

TEST(JSONCoderTest, RoundTripKeepsSpacesGroupsTypesAndAlpha) {
    const JSONCoder coder;
    const Palette back = coder.decode(coder.encode(sample()));
    expectExactPalette(back, sample());
    EXPECT_EQ(back.format, PaletteFormat::json);
}

TEST(JSONCoderTest, ReadsWithAByteOrderMarkAndDefaults) {
    const Palette palette = JSONCoder().decode(std::string_view(
        "\xEF\xBB\xBF{\"colors\":[{\"colorSpace\":\"LAB\",\"colorComponents\":[50,-20,10],\"colorType\":\"normal\"}],"
        "\"groups\":[{\"colors\":[]}]}"));
    EXPECT_TRUE(palette.name.empty());
    EXPECT_EQ(palette.colors, (std::vector<Color>{Color::lab(50, -20, 10, 1, "", ColorType::normal)}));
    ASSERT_EQ(palette.groups.size(), 1u);
    EXPECT_TRUE(palette.groups[0].name.empty());
}

TEST(JSONCoderTest, RefusesWhatIsNotItsForm) {
    const JSONCoder coder;
    for (const char* text : {"", "{", "[]", R"({"name":"x"})", R"({"colors":[],"groups":{}})", R"({"colors":[],"groups":[{"name":"G"}]})"})
        expectCommonError(Case::invalidFormat, [&] { coder.decode(std::string_view(text)); });
    expectCommonError(Case::invalidColorComponentCountForModelType,
                      [&] { coder.decode(std::string_view(R"({"colors":[{"colorSpace":"RGB","colorComponents":[1,1]}]})")); });
    expectCommonError(Case::unknownColorMode, [&] {
        coder.decode(std::string_view(R"({"colors":[{"colorSpace":"XYZ","colorComponents":[1,1,1]}]})"));
    });
}

TEST(JSONCoderTest, TextThatIsNotUTF8IsWrittenAnyway) {
    EXPECT_NE(JSONCoder().encode(Palette("Caf\xE9")).find("Caf\xEF\xBF\xBD"), std::string::npos);
}
