#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"
#include "exchange/Zip.h"
#include "exchange/coders/TextSupport.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

std::string encodeSwatches(const Palette& palette) { return coder(PaletteFormat::swatches)->encode(palette); }
Palette decodeSwatches(std::string_view bytes) { return coder(PaletteFormat::swatches)->decode(bytes); }

std::string archived(std::string_view json, zip::Method method = zip::Method::deflated, std::string name = "Swatches.json") {
    return zip::write({{std::move(name), json, method}});
}

std::string document(const std::string& archive) { return zip::Reader(archive).read("Swatches.json").value_or(""); }

// A swatch object as Procreate writes it, from 8-bit sRGB.
std::string swatch(int r, int g, int b, std::string_view extra = "") {
    const HSB hsb = Color::rgb255(r, g, b).hsb();
    return "{\"hue\": " + textfile::shortest(hsb.hf) + ", \"saturation\": " + textfile::shortest(hsb.sf) +
           ", \"brightness\": " + textfile::shortest(hsb.bf) + ", \"alpha\": 1, \"colorSpace\": 0" + std::string(extra) + "}";
}

}  // namespace

TEST(SwatchesCoderTest, WritesEveryProcreateSlot) {
    const Palette palette("Harbour \"Dusk\"", {Color::rgb255(26, 101, 151, 255, "Sea"), Color::rgb255(242, 220, 160, 255, "Sand")});
    std::string expected =
        "{\n"
        "  \"name\" : \"Harbour \\\"Dusk\\\"\",\n"
        "  \"swatches\" : [\n"
        "    { \"hue\" : 0.5666666666666668, \"saturation\" : 0.8278145695364238, \"brightness\" : 0.592156862745098, \"alpha\" : 1, \"colorSpace\" : 0 },\n"
        "    { \"hue\" : 0.12195121951219516, \"saturation\" : 0.33884297520661155, \"brightness\" : 0.9490196078431372, \"alpha\" : 1, \"colorSpace\" : 0 },\n";
    for (int slot = 2; slot < 29; ++slot) expected += "    null,\n";
    expected += "    null\n  ]\n}";
    const std::string archive = encodeSwatches(palette);
    EXPECT_EQ(document(archive), expected);
    // One deflated entry, as Procreate packs it.
    const zip::Reader reader(archive);
    ASSERT_EQ(reader.entries().size(), 1u);
    EXPECT_EQ(reader.entries()[0].method, 8);
}

TEST(SwatchesCoderTest, ReadsBothShapesProcreateWrote) {
    // Procreate 4: an array around the palette, stored by a third-party tool. Procreate 5: the palette
    // itself with empty slots, the extra keys of that version and its colour profiles.
    const Palette old = decodeSwatches(archived("[{\"name\": \"Retro & Vintage\", \"swatches\": [" + swatch(26, 101, 151) + ", " +
                                                    swatch(242, 220, 160) + "]}]",
                                                zip::Method::stored));
    EXPECT_EQ(old.name, "Retro & Vintage");
    EXPECT_EQ(old.format, PaletteFormat::swatches);
    EXPECT_EQ(old.colors, (std::vector{Color::rgb255(26, 101, 151), Color::rgb255(242, 220, 160)}));

    const std::string procreate5Keys =
        ", \"components\": [0.1, 0.4, 0.6], \"colorModel\": 0, \"origin\": 2, \"version\": \"5.0\", \"colorProfile\": \"abc=\"";
    const Palette current = decodeSwatches(archived("{\"swatches\": [null, " + swatch(255, 0, 0, procreate5Keys) + ", null, null, " +
                                                    swatch(0, 0, 0) + ", null], \"colorProfiles\": [{\"colorSpace\": 0, \"hash\": "
                                                    "\"abc=\", \"iccData\": \"AAAA\\r\\nAAAA\", \"iccName\": \"sRGB IEC61966-2.1\"}]}"));
    EXPECT_EQ(current.name, "") << "no name in the file: the caller names it after the file";
    EXPECT_EQ(current.colors, (std::vector{Color::rgb255(255, 0, 0), Color::rgb255(0, 0, 0)}));
}

TEST(SwatchesCoderTest, ClampsWhatLiesOutsideHSB) {
    const Palette palette = decodeSwatches(archived(
        "{\"name\": \"Odd\", \"swatches\": [{\"hue\": 1.0, \"saturation\": 1.5, \"brightness\": 1, \"alpha\": 0.2},"
        "{\"hue\": -3, \"saturation\": 0, \"brightness\": -0.2}]}"));
    // Hue 1 is hue 0; alpha is not Procreate's to say.
    EXPECT_EQ(palette.colors, (std::vector{Color::rgb(1, 0, 0), Color::rgb(0, 0, 0)}));
}

TEST(SwatchesCoderTest, KeepsTheColoursInOrderAndNothingProcreateCannotHold) {
    const Palette palette("Café ☕ ",
                          {Color::rgb255(10, 20, 30, 128, "Named"), Color::cmyk(0, 0.5, 1, 0)},
                          {Group("Group", {Color::lab(50, 20, -30), Color::gray(0.25)})});
    const Palette back = decodeSwatches(encodeSwatches(palette));
    EXPECT_EQ(back.name, "Café ☕ ");
    EXPECT_TRUE(back.groups.empty());
    const auto original = palette.allColors();
    ASSERT_EQ(back.colors.size(), original.size());
    for (std::size_t i = 0; i < original.size(); ++i) {
        const RGB expected = original[i].rgb();  // without its alpha and name
        EXPECT_TRUE(back.colors[i].isEqual(Color::rgb(expected.rf, expected.gf, expected.bf), 9)) << back.colors[i].debugDescription();
    }
}

TEST(SwatchesCoderTest, WritesTheFirstThirtyColoursOfALargerPalette) {
    Palette palette("Many");
    for (int i = 0; i < 45; ++i) palette.colors.push_back(Color::rgb255(i, 0, 0));
    const binarytest::LogCapture log;
    const Palette back = decodeSwatches(encodeSwatches(palette));
    ASSERT_EQ(back.colors.size(), 30u);
    EXPECT_EQ(back.colors.back(), Color::rgb255(29, 0, 0));
    EXPECT_TRUE(log.contains("Procreate Swatches: a palette holds 30 colors, 15 were left out", LogLevel::info));
}

TEST(SwatchesCoderTest, RefusesWhatIsNotAProcreatePalette) {
    const std::string json = "{\"name\": \"x\", \"swatches\": [" + swatch(1, 2, 3) + "]}";
    ASSERT_NO_THROW(decodeSwatches(archived(json)));
    for (const std::string& bytes : {
             json,                                                             // not in an archive
             archived(json, zip::Method::deflated, "swatches.json"),            // the name is exact
             archived(json, zip::Method::deflated, "palette/Swatches.json"),    // and at the root
             archived("{\"name\": \"x\", \"swatches\": ["),                     // broken JSON
             archived("[]"),                                                    // no palette in the array
             archived("{\"name\": \"x\"}"),                                     // no swatches
             archived("{\"swatches\": {}}"),                                    // swatches not a list
             archived("{\"swatches\": [\"red\"]}"),                             // a swatch that is not an object
             archived("{\"swatches\": [{\"hue\": 0, \"saturation\": 1}]}"),     // no brightness
             archived("{\"swatches\": [{\"hue\": \"0\", \"saturation\": 1, \"brightness\": 1}]}"),
         })
        expectCommonError(Case::invalidFormat, [&] { decodeSwatches(bytes); });
}
