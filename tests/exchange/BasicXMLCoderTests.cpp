#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto basicCoder = coder(PaletteFormat::basicXML);

// The example of docs/formats/basic-xml.md.
TEST(BasicXMLCoderTest, WritesTheDocumentedLayout) {
    const Palette palette("Harbour", {Color::rgb(0.1, 0.4, 0.6, 1, "Sea"), Color::gray(0.85, 0.5, "Fog")},
                          {Group("Inks & accents", {Color::cmyk(0, 0.55, 0.9, 0.05, 1, "Harbour Orange", ColorType::spot),
                                                    Color::lab(52, -20.9, 37.75)})});
    EXPECT_EQ(basicCoder->encode(palette),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<basicPalette version=\"1\" name=\"Harbour\">\n"
              "  <color name=\"Sea\" space=\"RGB\" components=\"0.1 0.4 0.6\"/>\n"
              "  <color name=\"Fog\" space=\"Gray\" components=\"0.85\" alpha=\"0.5\"/>\n"
              "  <group name=\"Inks &amp; accents\">\n"
              "    <color name=\"Harbour Orange\" space=\"CMYK\" components=\"0 0.55 0.9 0.05\" type=\"spot\"/>\n"
              "    <color space=\"LAB\" components=\"52 -20.9 37.75\"/>\n"
              "  </group>\n"
              "</basicPalette>\n");
}

TEST(BasicXMLCoderTest, ReadsBackExactlyWhatItWrites) {
    const Palette palette("Round <trip>", {Color::rgb255(26, 101, 151, 255, "Sea"), Color::gray(1.0 / 3, 0.25, "Third")},
                          {Group("", {Color::cmyk(0.05, 0.1, 0.35, 0, 1, "Sand", ColorType::normal)}),
                           Group("Lab", {Color::lab(64.37, -42.49, 63.91, 1, "Ünïcode ✓", ColorType::spot)})});
    expectExactPalette(basicCoder->decode(basicCoder->encode(palette)), palette);
}

TEST(BasicXMLCoderTest, ReadsShortHandWrittenFiles) {
    const Palette palette = basicCoder->decode(
        "<basicPalette>\n"
        "  <group><color hex=\"#1A6597\"/></group>\n"
        "  <color components=\"1, 0.5, 0\"/>\n"
        "  <color name=\"Half\" hex=\"#ff000080\"/>\n"
        "  <color hex=\"#00ff00\" alpha=\"0.25\" type=\"SPOT\"/>\n"
        "  <color space=\"cmyk\" components=\" 0 0 0\n 1 \"/>\n"
        "  <note>ignored</note>\n"
        "</basicPalette>");
    expectExactPalette(palette, Palette("", {Color::rgb(1, 0.5, 0), Color::rgb255(255, 0, 0, 128, "Half"),
                                             Color::rgb(0, 1, 0, 0.25, "", ColorType::spot), Color::cmyk(0, 0, 0, 1)},
                                        {Group("", {Color::rgb255(26, 101, 151)})}));
}

TEST(BasicXMLCoderTest, RefusesBrokenColoursAndOtherDocuments) {
    for (const char* text : {"", "<basicPalette>", "<basicPalette><color/></basicPalette>",
                             "<basicPalette><color components=\"1 x 0\"/></basicPalette>",
                             "<basicPalette><color space=\"HSB\" components=\"1 0 0\"/></basicPalette>",
                             "<basicPalette><color components=\"1 0 0\" type=\"special\"/></basicPalette>",
                             "<basicPalette><color components=\"1 0 0\" alpha=\"half\"/></basicPalette>",
                             "<basicPalette><color hex=\"#12\"/></basicPalette>"})
        EXPECT_TRUE(binarytest::commonError([text] { basicCoder->decode(text); }).has_value()) << text;
    expectCommonError(Case::invalidColorComponentCountForModelType,
                      [] { basicCoder->decode("<basicPalette><color space=\"CMYK\" components=\"1 0 0\"/></basicPalette>"); });
}
