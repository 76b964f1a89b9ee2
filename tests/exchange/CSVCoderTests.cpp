// CSV colour tables: the table we write, the shapes other programs and people write, and the
// separators and number conventions of spreadsheets.
#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"
#include "exchange/coders/CSVCoder.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

Palette decodeCSV(std::string_view text) { return coder(PaletteFormat::csv)->decode(text); }

const Palette harbour("Harbour", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(231, 111, 81, 128, "Buoy, \"faded\"")},
                      {Group("Odd names", {Color::rgb255(1, 2, 3, 255, "Two\nlines"), Color::rgb255(4, 5, 6, 255, "123"),
                                           Color::rgb255(7, 8, 9)})});

}  // namespace

TEST(CSVCoderTest, WritesAHeadedTable) {
    EXPECT_EQ(coder(PaletteFormat::csv)->encode(harbour),
              "name,hex,r,g,b,a\n"
              "Deep Water,#172a3a,23,42,58,255\n"
              "\"Buoy, \"\"faded\"\"\",#e76f51,231,111,81,128\n"
              "\"Two\nlines\",#010203,1,2,3,255\n"
              "123,#040506,4,5,6,255\n"
              ",#070809,7,8,9,255\n");
    CSVCoder argb;
    argb.hexFormat = ColorByteFormat::argb;
    EXPECT_EQ(argb.encode(Palette("", {Color::rgb255(231, 111, 81, 255, "Buoy")})), "name,hex,r,g,b\nBuoy,#ffe76f51,231,111,81\n");
}

TEST(CSVCoderTest, ReadsWhatItWrites) {
    const Palette back = decodeCSV(coder(PaletteFormat::csv)->encode(harbour));
    EXPECT_EQ(back.format, PaletteFormat::csv);
    EXPECT_EQ(back.colors, harbour.allColors());

    // The hex order matters when the hex column is all there is.
    CSVCoder bgra;
    bgra.hexFormat = ColorByteFormat::bgra;
    const Palette hexOnly = bgra.decode("name,hex\nBuoy,#516fe780\n");
    EXPECT_EQ(hexOnly.colors.at(0), Color::rgb255(231, 111, 81, 128, "Buoy"));
    EXPECT_EQ(decodeCSV("name,hex\nBuoy,#e76f5180\n").colors.at(0), Color::rgb255(231, 111, 81, 128, "Buoy"));
}

TEST(CSVCoderTest, ReadsRowsWithoutAHeaderByWhatTheirCellsHold) {
    const Palette palette = decodeCSV(
        "Active Title, 255, 255, 0\r\n"
        "0, 0, 128, Navy\r\n"
        "#AA7B00, Ochre, 170, 123, 0\r\n"
        "\"#aa7b00 \", \"Ochre, quoted\"\r\n"
        "255,0,0,128\r\n"
        "Thread 310, \"255 128 0\"\r\n");
    ASSERT_EQ(palette.colors.size(), 6u);
    EXPECT_EQ(palette.colors[0], Color::rgb255(255, 255, 0, 255, "Active Title"));
    EXPECT_EQ(palette.colors[1], Color::rgb255(0, 0, 128, 255, "Navy"));
    EXPECT_EQ(palette.colors[2], Color::rgb255(170, 123, 0, 255, "Ochre"));
    EXPECT_EQ(palette.colors[3], Color::rgb255(170, 123, 0, 255, "Ochre, quoted"));
    EXPECT_EQ(palette.colors[4], Color::rgb255(255, 0, 0, 128));
    EXPECT_EQ(palette.colors[5], Color::rgb255(255, 128, 0, 255, "Thread 310"));

    // A colour generator's single line.
    const Palette coolors = decodeCSV("ef476f,ffd166,#06d6a0\n");
    ASSERT_EQ(coolors.colors.size(), 3u);
    EXPECT_EQ(coolors.colors[2], Color::rgb255(6, 214, 160));
}

TEST(CSVCoderTest, ReadsHeadedTablesByColumnName) {
    // A thread chart: the number columns before r, g, b must not be taken for the colour.
    const Palette chart = decodeCSV("dunno,dmc,r,g,b,rgb_code,name\n1,310,0,0,0,#000000,Black\n2,321,199,43,59,#C72B3B,Red\n");
    ASSERT_EQ(chart.colors.size(), 2u);
    EXPECT_EQ(chart.colors[1], Color::rgb255(199, 43, 59, 255, "Red"));

    // Tab-separated, the colour in one cell, a "#" column left empty.
    const Palette tsv = decodeCSV("Name\t#\tRGB\nYellow\t\t255 255 0\nHalf\t\t255 255 0 128\n");
    ASSERT_EQ(tsv.colors.size(), 2u);
    EXPECT_EQ(tsv.colors[0], Color::rgb255(255, 255, 0, 255, "Yellow"));
    EXPECT_EQ(tsv.colors[1].alpha, 128 / 255.0);

    // A spreadsheet with a decimal comma separates with ';'; one decimal makes the file 0...1.
    const Palette european = decodeCSV("Name;R;G;B;Opacity\nHalb;1;0,5;0;0,25\nGanz;1;1;1;1\n");
    ASSERT_EQ(european.colors.size(), 2u);
    EXPECT_EQ(european.colors[0], Color::rgb(1, 0.5, 0, 0.25, "Halb"));
    EXPECT_EQ(european.colors[1], Color::rgb(1, 1, 1, 1, "Ganz"));
    // Without any decimal, integers are 0...255.
    EXPECT_EQ(decodeCSV("1,0,0\n").colors.at(0), Color::rgb255(1, 0, 0));

    // A header we cannot map is passed over and the rows read by their cells.
    EXPECT_EQ(decodeCSV("Farbe;Wert\nRot;#ff0000\n").colors.at(0), Color::rgb255(255, 0, 0, 255, "Rot"));
}

TEST(CSVCoderTest, RefusesTablesWithoutColours) {
    for (const char* text : {"", "\n \n", "name,hex,r,g,b\n", "hello,world\n", "Red,255,0,0\nTotal,3\n", "\"unclosed,255,0,0\n",
                             "name,hex\nRed,not hex\n", "051,0x33,0\n"})
        expectCommonError(Case::invalidFormat, [text] { decodeCSV(text); });
}
