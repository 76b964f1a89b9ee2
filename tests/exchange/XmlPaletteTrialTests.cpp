// The four XML formats share the extension .xml and are tried in a fixed order: each must refuse the
// others' documents, so that an early one never takes a later one's file.
#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;

TEST(XmlPaletteTrialTest, EachKindOfXMLPaletteIsReadByItsOwnCoder) {
    const std::pair<const char*, PaletteFormat> files[] = {
        {"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<resources><color name=\"sea\">#1A6597</color></resources>",
         PaletteFormat::androidXML},
        {"<?xml version=\"1.0\"?>\n<basicPalette><color name=\"sea\" hex=\"#1A6597\"/></basicPalette>", PaletteFormat::basicXML},
        {"<?xml version=\"1.0\"?>\n<palette guid=\"x\" name=\"Harbour\"><colors><page>"
         "<color cs=\"RGB\" name=\"sea\" tints=\"0.101961,0.396078,0.592157\"/></page></colors></palette>",
         PaletteFormat::corelDraw},
        {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SCRIBUSCOLORS><COLOR NAME=\"sea\" RGB=\"#1a6597\"/></SCRIBUSCOLORS>",
         PaletteFormat::scribusXML},
    };
    for (const auto& [text, format] : files) {
        SCOPED_TRACE(text);
        const Palette palette = PAL::decode(std::string_view(text), "xml");
        EXPECT_EQ(palette.format, format);
        ASSERT_EQ(palette.allColors().size(), 1u);
        EXPECT_EQ(palette.allColors()[0], Color::rgb255(26, 101, 151, 255, "sea"));
    }
    expectCommonError(CommonError::Case::unsupportedPaletteType, [] { PAL::decode(std::string_view("<svg/>"), "XML"); });
}
