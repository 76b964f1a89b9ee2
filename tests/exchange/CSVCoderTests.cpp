// CSV colour tables: the table we write, the shapes other programs and people write, and the
// separators and number conventions of spreadsheets.
#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"
#include "exchange/coders/CSVCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto csvCoder = coder(PaletteFormat::csv);

TEST(CSVCoderTest, WritesAHeadedTableAndReadsItBack) {
    const Palette harbour("Harbour", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(231, 111, 81, 128, "Buoy, \"faded\"")},
                          {Group("Odd names", {Color::rgb255(1, 2, 3, 255, "Two\nlines"), Color::rgb255(4, 5, 6, 255, "123"),
                                               Color::rgb255(7, 8, 9)})});
    const std::string text = csvCoder->encode(harbour);
    EXPECT_EQ(text,
              "name,hex,r,g,b,a\n"
              "Deep Water,#172a3a,23,42,58,255\n"
              "\"Buoy, \"\"faded\"\"\",#e76f51,231,111,81,128\n"
              "\"Two\nlines\",#010203,1,2,3,255\n"
              "123,#040506,4,5,6,255\n"
              ",#070809,7,8,9,255\n");
    EXPECT_EQ(csvCoder->decode(text).colors, harbour.allColors());

    // The hex order matters when the hex column is all there is.
    CSVCoder argb, bgra;
    argb.hexFormat = ColorByteFormat::argb;
    EXPECT_EQ(argb.encode(Palette("", {Color::rgb255(231, 111, 81, 255, "Buoy")})), "name,hex,r,g,b\nBuoy,#ffe76f51,231,111,81\n");
    bgra.hexFormat = ColorByteFormat::bgra;
    EXPECT_EQ(bgra.decode("name,hex\nBuoy,#516fe780\n").colors.at(0), Color::rgb255(231, 111, 81, 128, "Buoy"));
    EXPECT_EQ(csvCoder->decode("name,hex\nBuoy,#e76f5180\n").colors.at(0), Color::rgb255(231, 111, 81, 128, "Buoy"));
}

TEST(CSVCoderTest, ReadsRowsWithoutAHeaderByWhatTheirCellsHold) {
    const Palette palette = csvCoder->decode(
        "Active Title, 255, 255, 0\r\n"
        "0, 0, 128, Navy\r\n"
        "#AA7B00, Ochre, 170, 123, 0\r\n"
        "\"#aa7b00 \", \"Ochre, quoted\"\r\n"
        "255,0,0,128\r\n"
        "Thread 310, \"255 128 0\"\r\n");
    EXPECT_EQ(palette.colors,
              (std::vector<Color>{Color::rgb255(255, 255, 0, 255, "Active Title"), Color::rgb255(0, 0, 128, 255, "Navy"),
                                  Color::rgb255(170, 123, 0, 255, "Ochre"), Color::rgb255(170, 123, 0, 255, "Ochre, quoted"),
                                  Color::rgb255(255, 0, 0, 128), Color::rgb255(255, 128, 0, 255, "Thread 310")}));
    // A colour generator's single line.
    EXPECT_EQ(csvCoder->decode("ef476f,ffd166,#06d6a0\n").colors,
              (std::vector<Color>{Color::rgb255(239, 71, 111), Color::rgb255(255, 209, 102), Color::rgb255(6, 214, 160)}));
}

TEST(CSVCoderTest, ReadsHeadedTablesByColumnName) {
    // A thread chart: the number columns before r, g, b must not be taken for the colour.
    EXPECT_EQ(csvCoder->decode("dunno,dmc,r,g,b,rgb_code,name\n1,310,0,0,0,#000000,Black\n2,321,199,43,59,#C72B3B,Red\n").colors,
              (std::vector<Color>{Color::rgb255(0, 0, 0, 255, "Black"), Color::rgb255(199, 43, 59, 255, "Red")}));

    // Tab-separated, the colour in one cell, a "#" column left empty.
    EXPECT_EQ(csvCoder->decode("Name\t#\tRGB\nYellow\t\t255 255 0\nHalf\t\t255 255 0 128\n").colors,
              (std::vector<Color>{Color::rgb255(255, 255, 0, 255, "Yellow"), Color::rgb255(255, 255, 0, 128, "Half")}));

    // A spreadsheet with a decimal comma separates with ';'; one decimal makes the file 0...1.
    EXPECT_EQ(csvCoder->decode("Name;R;G;B;Opacity\nHalb;1;0,5;0;0,25\nGanz;1;1;1;1\n").colors,
              (std::vector<Color>{Color::rgb(1, 0.5, 0, 0.25, "Halb"), Color::rgb(1, 1, 1, 1, "Ganz")}));
    // Without any decimal, integers are 0...255.
    EXPECT_EQ(csvCoder->decode("1,0,0\n").colors.at(0), Color::rgb255(1, 0, 0));

    // A header we cannot map is passed over and the rows read by their cells.
    EXPECT_EQ(csvCoder->decode("Farbe;Wert\nRot;#ff0000\n").colors.at(0), Color::rgb255(255, 0, 0, 255, "Rot"));
}

TEST(CSVCoderTest, RefusesTablesWithoutColours) {
    for (const char* text : {"", "\n \n", "name,hex,r,g,b\n", "hello,world\n", "Red,255,0,0\nTotal,3\n", "\"unclosed,255,0,0\n",
                             "name,hex\nRed,not hex\n", "051,0x33,0\n"})
        expectCommonError(Case::invalidFormat, [text] { csvCoder->decode(text); });
}
