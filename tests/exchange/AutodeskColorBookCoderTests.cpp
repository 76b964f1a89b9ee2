#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto bookCoder = coder(PaletteFormat::autodeskColorBook);

namespace {

std::string entry(const char* name, int r, int g, int b) {
    return std::string("<colorEntry><colorName>") + name + "</colorName><RGB8><red>" + std::to_string(r) + "</red><green>" +
           std::to_string(g) + "</green><blue>" + std::to_string(b) + "</blue></RGB8></colorEntry>";
}

}  // namespace

TEST(AutodeskColorBookCoderTest, WritesTheFullFormOfPublishedBooks) {
    // Names are unique and never empty; each group's own page is left to the round trip below.
    const Palette palette("Harbour & Co", {Color::rgb255(26, 101, 151, 255, "Sea"), Color::rgb255(242, 220, 160, 128),
                                           Color::rgb255(1, 2, 3, 255, "Sea")});
    EXPECT_EQ(bookCoder->encode(palette),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<colorBook>\n"
              "  <bookName>Harbour &amp; Co</bookName>\n"
              "  <majorVersion>1</majorVersion>\n"
              "  <minorVersion>0</minorVersion>\n"
              "  <colorPage>\n"
              "    <pageColor>\n"
              "      <RGB8><red>26</red><green>101</green><blue>151</blue></RGB8>\n"
              "    </pageColor>\n"
              "    <colorEntry>\n"
              "      <colorName>Sea</colorName>\n"
              "      <RGB8><red>26</red><green>101</green><blue>151</blue></RGB8>\n"
              "    </colorEntry>\n"
              "    <colorEntry>\n"
              "      <colorName>f2dca0</colorName>\n"
              "      <RGB8><red>242</red><green>220</green><blue>160</blue></RGB8>\n"
              "    </colorEntry>\n"
              "    <colorEntry>\n"
              "      <colorName>Sea 2</colorName>\n"
              "      <RGB8><red>1</red><green>2</green><blue>3</blue></RGB8>\n"
              "    </colorEntry>\n"
              "  </colorPage>\n"
              "</colorBook>\n");
}

// Pages have no names in the format, so groups come back as "Page N"; a group longer than ten
// colours spans pages, and every group starts its own.
TEST(AutodeskColorBookCoderTest, ReadsWhatItWritesPageByPage) {
    Palette palette("Book", {Color::rgb255(26, 101, 151, 255, "Sea")});
    Group tones("Long");
    for (int i = 0; i < 12; ++i) tones.colors.push_back(Color::rgb255(i, 2 * i, 255 - i, 255, "Tone " + std::to_string(i)));
    palette.groups = {tones, Group("Short", {Color::cmyk(0, 0, 0, 0, 1, "Paper")})};
    const Palette back = bookCoder->decode(bookCoder->encode(palette));
    EXPECT_EQ(back.name, "Book");
    EXPECT_TRUE(back.colors.empty());
    ASSERT_EQ(back.groups.size(), 4u);
    EXPECT_EQ(back.groups[0].name, "Page 1");
    EXPECT_EQ(back.groups[0].colors, palette.colors);
    EXPECT_EQ(back.groups[1].colors, std::vector<Color>(tones.colors.begin(), tones.colors.begin() + 10));
    EXPECT_EQ(back.groups[2].colors, std::vector<Color>(tones.colors.begin() + 10, tones.colors.end()));
    EXPECT_EQ(back.groups[3].name, "Page 4");
    EXPECT_EQ(back.groups[3].colors.at(0).hexString(), palette.groups[1].colors[0].hexString());
}

TEST(AutodeskColorBookCoderTest, ReadsHandMadeBooksAndSkipsEncryptedEntries) {
    const Palette palette = bookCoder->decode(
        "\xEF\xBB\xBF\n  <?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<colorbook><bookName> Hand made </bookName>\n"
        "<colorPage><pageColor><RGB8><red>100</red><green>100</green><blue>100</blue></RGB8></pageColor>" +
        entry("Sea", 26, 101, 151) + entry("Loud", 300, -4, 7) +
        "<colorEntry><colorName>Locked</colorName><RGB8Encrypt><redEncrypt>GGR</redEncrypt></RGB8Encrypt></colorEntry>"
        "<colorEntry><colorName>Half</colorName><RGB8><red>1</red><green>2</green></RGB8></colorEntry>"
        "</colorPage>"
        "<colorPage>" + entry("Only encrypted page follows", 0, 0, 0) + "</colorPage>"
        "<colorPage><colorEntry><RGB8Encrypt/></colorEntry></colorPage>"
        "<colorPage>" + entry("  Spaced  ", 9, 8, 7) + "</colorPage>"
        "</colorbook>");
    EXPECT_EQ(palette.name, "Hand made");
    ASSERT_EQ(palette.groups.size(), 3u);
    EXPECT_EQ(palette.groups[0].colors,
              (std::vector<Color>{Color::rgb255(26, 101, 151, 255, "Sea"), Color::rgb255(255, 0, 7, 255, "Loud")}));
    EXPECT_EQ(palette.groups[1].name, "Page 2");
    EXPECT_EQ(palette.groups[2].name, "Page 4");
    EXPECT_EQ(palette.groups[2].colors.at(0).name, "Spaced");
}

TEST(AutodeskColorBookCoderTest, RefusesAdobeBooksEncryptedBooksAndOtherFiles) {
    const std::string adobe = binarytest::hexBytes("38 42 43 42 00 01 0B B8") + "<colorBook/>";
    const std::string encrypted =
        "<colorBook><bookName>PANTONE</bookName><colorPage><colorEntry><colorName>185 C</colorName>"
        "<RGB8Encrypt><redEncrypt>GGR</redEncrypt><greenEncrypt>ABC</greenEncrypt><blueEncrypt>XYZ</blueEncrypt></RGB8Encrypt>"
        "</colorEntry></colorPage></colorBook>";
    for (const std::string& text : {adobe, encrypted, std::string(""), std::string("<colorBook>")})
        expectCommonError(Case::invalidFormat, [&] { bookCoder->decode(text); });
    // Through the trial, Adobe's coder is asked first and this one refuses what it cannot read.
    expectCommonError(Case::unsupportedPaletteType, [&] { PAL::decode(encrypted, "acb"); });
}
