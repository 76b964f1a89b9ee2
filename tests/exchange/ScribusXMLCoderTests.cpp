#include <gtest/gtest.h>

#include <regex>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using binarytest::expectComponents;
using Case = CommonError::Case;

const auto scribusCoder = coder(PaletteFormat::scribusXML);

namespace {

std::string withoutComments(const std::string& text) {
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const auto start = std::min(text.find("<!--", at), text.size());
        const auto end = text.find("-->", start);
        out.append(text, at, start - at);
        at = end == std::string::npos ? text.size() : end + 3;
    }
    return out;
}

// The attribute text of each <COLOR ...> element, in order.
std::vector<std::string> colorElements(const std::string& text) {
    std::vector<std::string> elements;
    for (auto at = text.find("<COLOR "); at != std::string::npos; at = text.find("<COLOR ", at + 1))
        elements.push_back(text.substr(at + 7, text.find('>', at) - at - 7));
    return elements;
}

}  // namespace

TEST(ScribusXMLCoderTest, WritesBothTheComponentsAndTheHexForms) {
    const Palette palette("Harbour", {Color::rgb255(26, 101, 151, 255, "Sea"), Color::cmyk(0.05, 0.1, 0.35, 0, 1, "Sand"),
                                      Color::cmyk(0, 0.55, 0.9, 0.05, 1, "Harbour Orange", ColorType::spot)},
                          {Group("Flattened", {Color::gray(0.75, 1, "Mid grey"), Color::rgb(0.5, 0, 1, 0.5, "None"),
                                               Color::rgb255(255, 0, 0), Color::rgb255(0, 0, 0, 255, "Sea")})});
    EXPECT_EQ(scribusCoder->encode(palette),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<SCRIBUSCOLORS Name=\"Harbour\">\n"
              " <COLOR NAME=\"Sea\" SPACE=\"RGB\" R=\"26\" G=\"101\" B=\"151\" RGB=\"#1a6597\"/>\n"
              " <COLOR NAME=\"Sand\" SPACE=\"CMYK\" C=\"5\" M=\"10\" Y=\"35\" K=\"0\" CMYK=\"#0d1a5900\"/>\n"
              " <COLOR NAME=\"Harbour Orange\" SPACE=\"CMYK\" C=\"0\" M=\"55\" Y=\"90\" K=\"5\" CMYK=\"#008ce60d\" Spot=\"1\"/>\n"
              " <COLOR NAME=\"Mid grey\" SPACE=\"CMYK\" C=\"0\" M=\"0\" Y=\"0\" K=\"25\" CMYK=\"#00000040\"/>\n"
              " <COLOR NAME=\"None 2\" SPACE=\"RGB\" R=\"127.5\" G=\"0\" B=\"255\" RGB=\"#8000ff\"/>\n"
              " <COLOR NAME=\"ff0000\" SPACE=\"RGB\" R=\"255\" G=\"0\" B=\"0\" RGB=\"#ff0000\"/>\n"
              " <COLOR NAME=\"Sea 2\" SPACE=\"RGB\" R=\"0\" G=\"0\" B=\"0\" RGB=\"#000000\"/>\n"
              "</SCRIBUSCOLORS>\n");
}

TEST(ScribusXMLCoderTest, ReadsWhatItWritesInEachColourSpace) {
    const Palette palette("Round trip", {Color::rgb255(26, 101, 151, 255, "Sea"), Color::cmyk(0.05, 0.1, 0.35, 0, 1, "Sand & sun"),
                                         Color::cmyk(0, 0.55, 0.9, 0.05, 1, "Orange", ColorType::spot),
                                         Color::lab(52, -20.9, 37.75, 1, "Moss")});
    const std::string written = scribusCoder->encode(palette);
    EXPECT_NE(written.find("<COLOR NAME=\"Moss\" SPACE=\"Lab\" L=\"52\" A=\"-20.9\" B=\"37.75\" RGB=\"#"), std::string::npos);
    const Palette back = scribusCoder->decode(written);
    EXPECT_EQ(back.name, "Round trip");
    EXPECT_EQ(back.colors, palette.colors);
    // A grey comes back as the black-ink tint it was written as.
    const Palette grey = scribusCoder->decode(scribusCoder->encode(Palette("", {Color::gray(0.75, 1, "Grey")})));
    expectComponents(grey.colors.at(0), ColorSpace::CMYK, {0, 0, 0, 0.25});
}

TEST(ScribusXMLCoderTest, ReadsTheAttributesInScribussOrderOfPrecedence) {
    const Palette palette = scribusCoder->decode(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<SCRIBUSCOLORS NAME=\"Mixed\">\n"
        "  <COLOR NAME=\"Only K\" SPACE=\"CMYK\" CMYK=\"#ff000000\" K=\"100\"/>\n"    // components win, missing ones are 0
        "  <COLOR NAME=\"Both hex\" CMYK=\"#00ff0000\" RGB=\"#ff0000\" Spot=\"1\"/>\n"  // CMYK hex before RGB
        "  <COLOR NAME=\"Short\" RGB=\"#f80\" Register=\"1\"/>\n"
        "  <COLOR NAME=\"Lab\" L=\"50\" A=\"10\" B=\"-20\"/>\n"
        "  <COLOR NAME=\"None\" RGB=\"#ffffff\"/>\n"                                   // reserved for no colour
        "  <COLOR NAME=\"Nothing\"/>\n"                                                // no value: skipped
        "  <COLOR NAME=\"Bad\" RGB=\"tomato\"/>\n"
        "  <COLOR NAME=\"Short\" SPACE=\"RGB\" R=\"0\" G=\"127.5\" B=\"255\"/>\n"     // a repeated name is kept
        "  <Gradient Name=\"g\"><CSTOP RAMP=\"0\" NAME=\"Short\" SHADE=\"100\" TRANS=\"1\"/></Gradient>\n"
        "</SCRIBUSCOLORS>\n"
        "<!-- licence after the root -->\n");
    EXPECT_EQ(palette.name, "Mixed");
    EXPECT_EQ(palette.colors, (std::vector<Color>{Color::cmyk(0, 0, 0, 1, 1, "Only K"), Color::cmyk(0, 1, 0, 0, 1, "Both hex", ColorType::spot),
                                                  Color::rgb255(255, 136, 0, 255, "Short"), Color::lab(50, 10, -20, 1, "Lab"),
                                                  Color::rgb(0, 0.5, 1, 1, "Short")}));

    // The camel-case spelling of Scribus 1.7 development builds.
    const Palette camel =
        scribusCoder->decode("<ScribusColors Name=\"New\"><Color Name=\"Sea\" Space=\"RGB\" R=\"26\" G=\"101\" B=\"151\"/></ScribusColors>");
    EXPECT_EQ(camel.name, "New");
    EXPECT_EQ(camel.colors, (std::vector<Color>{Color::rgb255(26, 101, 151, 255, "Sea")}));
}

TEST(ScribusXMLCoderTest, RefusesWhatIsNotAScribusPalette) {
    for (const char* text : {"", "<SCRIBUSCOLORS>", "<SCRIBUSUTF8NEW Version=\"1.5.8\"/>"})
        expectCommonError(Case::invalidFormat, [text] { scribusCoder->decode(text); });
}

// Every swatch file Scribus ships opens with as many colours as it has COLOR elements, and each colour
// given only by its RGB hex has that value.
TEST(ScribusXMLCoderTest, ReadsEverySwatchFileScribusShips) {
    const std::regex rgb(R"re(\bRGB="#([0-9a-fA-F]{6})")re");
    std::size_t files = 0;
    for (const auto& file : std::filesystem::directory_iterator(realPalettes() / "scribus-data")) {
        if (file.path().extension() != ".xml") continue;
        ++files;
        SCOPED_TRACE(file.path().filename().string());
        const std::string text = readFile(file.path());
        const Palette palette = scribusCoder->decode(text);
        const auto elements = colorElements(withoutComments(text));
        ASSERT_EQ(palette.colors.size(), elements.size());
        for (std::size_t index = 0; index < elements.size(); ++index) {
            const std::string& attributes = elements[index];
            std::smatch hex;
            const bool rgbOnly = attributes.find("CMYK=") == std::string::npos && attributes.find("SPACE=") == std::string::npos;
            if (rgbOnly && std::regex_search(attributes, hex, rgb)) {
                EXPECT_EQ(palette.colors[index].hexString(), Color::hex(hex[1].str()).hexString()) << attributes;
            }
        }
        const Palette again = scribusCoder->decode(scribusCoder->encode(palette));
        EXPECT_EQ(again.colors.size(), palette.colors.size());
    }
    EXPECT_GE(files, 30u);

    // What the scan above does not see: CMYK values, spot inks and the palette's name.
    const Palette basic = scribusCoder->decode(realFile("scribus-data/Scribus_Basic.xml"));
    EXPECT_EQ(basic.colors.at(3), Color::cmyk(1, 0, 0, 0, 1, "Cyan"));
    EXPECT_EQ(basic.colors.at(11), Color::cmyk(1, 1, 1, 1, 1, "Registration"));
    const Palette hks = scribusCoder->decode(realFile("scribus-data/Bundesregierung_HKS.xml"));
    EXPECT_EQ(hks.name, "Bundesregierung HKS");
    EXPECT_EQ(hks.colors.at(0), Color::rgb255(0xff, 0xb6, 0x00, 255, "HKS 5 K", ColorType::spot));
}
