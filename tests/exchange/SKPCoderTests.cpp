// sK1 palettes: UniConvertor's layout, the Python literals both sK1 generations write, and the lines
// sK1 passes over.
#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto skpCoder = coder(PaletteFormat::skp);

const Palette harbour("Harbour Dusk",
                      {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::cmyk(0, 0.16, 0.55, 0.09, 1, "Lamplight"),
                       Color::rgb255(231, 111, 81, 255, "Buoy", ColorType::spot)},
                      {Group("More", {Color::gray(0.5, 0.25, "Half's \\ grey"), Color::lab(50, 0, -128, 1, "Caf\u00e9"),
                                      Color::cmyk(1, 0, 0, 0, 1, "Cyan\nink", ColorType::spot)})});

TEST(SKPCoderTest, WritesUniConvertorsLayoutInASCIIAndReadsItBack) {
    const std::string text = skpCoder->encode(harbour);
    EXPECT_EQ(text,
              "##sK1 palette\n"
              "palette()\n"
              "set_name('Harbour Dusk')\n"
              "set_source('Kro')\n"
              "set_columns(1)\n"
              "color(['RGB', [0.09019607843137255, 0.16470588235294117, 0.22745098039215686], 1.0, 'Deep Water'])\n"
              "color(['CMYK', [0.0, 0.16, 0.55, 0.09], 1.0, 'Lamplight'])\n"
              "color(['SPOT', [[0.9058823529411765, 0.43529411764705883, 0.3176470588235294], []], 1.0, 'Buoy', 'Harbour Dusk'])\n"
              "color(['Grayscale', [0.5], 0.25, 'Half\\'s \\\\ grey'])\n"
              "color(['LAB', [0.5, 0.5019607843137255, 0.0], 1.0, 'Caf\\xc3\\xa9'])\n"
              "color(['SPOT', [[], [1.0, 0.0, 0.0, 0.0]], 1.0, 'Cyan ink', 'Harbour Dusk'])\n"
              "palette_end()\n");
    const Palette back = skpCoder->decode(text);
    EXPECT_EQ(back.name, "Harbour Dusk");
    auto expected = harbour.allColors();
    expected.back().name = "Cyan ink";  // a line break cannot stand in a line
    EXPECT_EQ(back.colors, expected);
    EXPECT_TRUE(back.groups.empty());
}

TEST(SKPCoderTest, ReadsPythonLiteralsOfBothGenerations) {
    const Palette palette = skpCoder->decode(
        "##sK1 palette\r\n"
        "palette()\r\n"
        "set_name(u'Caf\\xe9 \\u2713')\r\n"
        "set_source('Example')\r\n"
        "add_comments('Line one')\r\n"
        "set_columns(4)\r\n"
        "\r\n"
        "# a comment line\r\n"
        "color([\"RGB\", [1.0, 0.0, 0.0], 0.5, \"Rock 'n' roll\"])\r\n"
        "color(['RGB', [0, 1, 0], 1.0, 'It\\'s \"quoted\"'])  # a trailing comment\r\n"
        "color(['RGB', [0.0, 0.0, 1.0], 1.0, 'Caf\\xc3\\xa9'])\r\n"
        "color(['RGB', [0.0, 0.0, 1.0], 1.0, 'Caf\\xe9'])\r\n"
        "color(['RGB', [0.0, 0.0, 1.0], 1.0, u'\\ud83c\\udfa8 \\351\\tb'])\r\n"
        "color(['CMYK', [3.9e-05, 0.16, 0.55, 0.09], 1.0, 'Lamplight'])\r\n"
        "color(['Grayscale', [0.25], 1.0, 'Slate'])\r\n"
        "color(['LAB', [0.5, 0.5019607843137255, 0.0], 1.0, 'Lab'])\r\n"
        "color(['SPOT', [[], [1.0, 0.0, 0.0, 0.0]], 1.0, 'Cyan ink', 'Harbour Dusk'])\r\n"
        "color(['SPOT', [[0.0, 0.0, 0.0], [1.0, 1.0, 1.0, 1.0]], 1.0, 'Registration Black'])\r\n"
        "hexcolor('#ff8000')\r\n"
        "rgbcolor(0, 128, 255, 'Sky')\r\n"
        "rotate_palette(90)\r\n"
        "color(['HSV', [0.0, 0.0, 0.0], 1.0, 'Unknown model'])\r\n"
        "color(['RGB', [0.0, 0.0], 1.0, 'Too few'])\r\n"
        "color(['RGB', [0.0, 0.0, 0.0], 1.0, 'Unclosed')\r\n"
        "palette_end()\r\n"
        "color(['RGB', [1.0, 1.0, 1.0], 1.0, 'After the end'])\r\n");
    EXPECT_EQ(palette.name, "Caf\u00e9 \u2713");
    EXPECT_EQ(palette.colors,
              (std::vector<Color>{Color::rgb(1, 0, 0, 0.5, "Rock 'n' roll"), Color::rgb(0, 1, 0, 1, "It's \"quoted\""),
                                  Color::rgb(0, 0, 1, 1, "Caf\u00e9"), Color::rgb(0, 0, 1, 1, "Caf\u00e9"),
                                  Color::rgb(0, 0, 1, 1, "\U0001F3A8 \u00e9\tb"), Color::cmyk(3.9e-05, 0.16, 0.55, 0.09, 1, "Lamplight"),
                                  Color::gray(0.25, 1, "Slate"), Color::lab(50, 0, -128, 1, "Lab"),
                                  Color::cmyk(1, 0, 0, 0, 1, "Cyan ink", ColorType::spot),
                                  Color::rgb(0, 0, 0, 1, "Registration Black", ColorType::spot),
                                  Color::rgb255(255, 128, 0, 255, "#ff8000"), Color::rgb255(0, 128, 255, 255, "Sky")}));
}

TEST(SKPCoderTest, RefusesWhatIsNotAnSK1Palette) {
    const std::string deep = "##sK1 palette\ncolor(" + std::string(100000, '[') + "\n";
    for (const std::string& text : {std::string(), std::string("##sK1"), std::string("##sK1 palette\npalette()\nset_name('Empty')\npalette_end()\n"),
                                   std::string(" ##sK1 palette\ncolor(['RGB', [0.0, 0.0, 0.0], 1.0, 'Black'])\n"), deep})
        expectCommonError(Case::invalidFormat, [&] { skpCoder->decode(text); });
}
