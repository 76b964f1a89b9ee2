#include <gtest/gtest.h>

#include <regex>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto socCoder = coder(PaletteFormat::openOffice);

constexpr std::string_view odfRoot =
    "<ooo:color-table xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\" "
    "xmlns:draw=\"urn:oasis:names:tc:opendocument:xmlns:drawing:1.0\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
    "xmlns:svg=\"http://www.w3.org/2000/svg\" xmlns:ooo=\"http://openoffice.org/2004/office\">\n";

// Names are unique and never empty, since LibreOffice keeps only the last of a name and drops an empty one.
TEST(OpenOfficeCoderTest, WritesLibreOfficesOwnLayoutAndReadsItBack) {
    const Palette palette("Ignored", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(64, 112, 138, 128, "R & B \"quoted\"")},
                          {Group("Flattened", {Color::rgb255(233, 196, 106), Color::rgb255(231, 111, 81, 255, "Deep Water")})});
    const std::string text = socCoder->encode(palette);
    EXPECT_EQ(text, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + std::string(odfRoot) +
                        "  <draw:color draw:name=\"Deep Water\" draw:color=\"#172a3a\"/>\n"
                        "  <draw:color draw:name=\"R &amp; B &quot;quoted&quot;\" draw:color=\"#40708a\"/>\n"
                        "  <draw:color draw:name=\"e9c46a\" draw:color=\"#e9c46a\"/>\n"
                        "  <draw:color draw:name=\"Deep Water 2\" draw:color=\"#e76f51\"/>\n"
                        "</ooo:color-table>\n");
    EXPECT_EQ(socCoder->decode(text).colors, (std::vector<Color>{palette.colors[0], Color::rgb255(64, 112, 138, 255, "R & B \"quoted\""),
                                               Color::rgb255(233, 196, 106, 255, "e9c46a"),
                                               Color::rgb255(231, 111, 81, 255, "Deep Water 2")}));
}

TEST(OpenOfficeCoderTest, ReadsBothGenerationsAndLosesNothingLibreOfficeWouldDrop) {
    const Palette old = socCoder->decode(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- a comment -->\n"
        "<office:color-table xmlns:office=\"http://openoffice.org/2000/office\" xmlns:draw=\"http://openoffice.org/2000/drawing\">\n"
        "<draw:color draw:name=\"Blue\" draw:color=\"#0000FF\"/>\n"
        "<draw:color draw:name=\"\" draw:color=\"#00ff00\"/>\n"  // LibreOffice drops an empty name
        "<draw:color draw:name=\"Blue\" draw:color=\"#000080\"/>\n"  // and keeps only the last of a name
        "<draw:color draw:name=\"Short\" draw:color=\"#abc\"/>\n"   // not #rrggbb: skipped, not black
        "<draw:color draw:name=\"Missing\"/>\n"
        "</office:color-table>");
    EXPECT_EQ(old.colors,
              (std::vector<Color>{Color::rgb255(0, 0, 255, 255, "Blue"), Color::rgb255(0, 255, 0), Color::rgb255(0, 0, 128, 255, "Blue")}));

    const Palette odf = socCoder->decode(std::string(odfRoot) + "</ooo:color-table>");
    EXPECT_TRUE(odf.colors.empty());  // LibreOffice's own user.soc is an empty table
}

TEST(OpenOfficeCoderTest, RefusesWhatIsNotAColourTable) {
    for (const char* text : {"", "<color-table><draw:color", "<office:gradient-table/>"})
        expectCommonError(Case::invalidFormat, [text] { socCoder->decode(text); });
}

// Every colour table LibreOffice ships opens with the entries a plain scan of the file finds.
TEST(OpenOfficeCoderTest, ReadsEveryTableLibreOfficeShips) {
    const std::regex entry(R"re(<draw:color\s+draw:name="([^"]*)"\s+draw:color="#([0-9a-fA-F]{6})")re");
    std::size_t files = 0;
    for (const auto& file : std::filesystem::directory_iterator(realPalettes() / "libreoffice-common")) {
        if (file.path().extension() != ".soc") continue;
        ++files;
        SCOPED_TRACE(file.path().filename().string());
        const std::string text = readFile(file.path());
        const Palette palette = socCoder->decode(text);
        std::vector<Color> scanned;
        for (auto match = std::sregex_iterator(text.begin(), text.end(), entry); match != std::sregex_iterator(); ++match)
            scanned.push_back(Color::hex((*match)[2].str(), ColorByteFormat::rgb, (*match)[1].str()));
        ASSERT_FALSE(scanned.empty());
        EXPECT_EQ(palette.colors, scanned);
        EXPECT_EQ(socCoder->decode(socCoder->encode(palette)).colors, palette.colors);
    }
    EXPECT_GE(files, 8u);
    EXPECT_EQ(socCoder->decode(realFile("libreoffice-common/freecolour-hlc.soc")).colors.size(), 1032u);
}
