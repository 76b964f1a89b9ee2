#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

Palette decodeGIMP(std::string_view text) { return coder(PaletteFormat::gimp)->decode(text); }

}  // namespace

TEST(GIMPCoderTest, WritesGIMPsOwnLayoutAndReadsItBack) {
    Palette palette("Harbour Dusk", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(64, 112, 138, 255, "Tide"),
                                     Color::rgb255(233, 196, 106, 128, "Lamp\nlight")},
                    {Group("Accents", {Color::rgb255(231, 111, 81), Color::cmyk(0, 0, 0, 0, 1, "Paper")})});
    const std::string text = coder(PaletteFormat::gimp)->encode(palette);
    EXPECT_EQ(text,
              "GIMP Palette\n"
              "Name: Harbour Dusk\n"
              "Columns: 5\n"
              "#\n"
              " 23  42  58\tDeep Water\n"
              " 64 112 138\tTide\n"
              "233 196 106\tLamp light\n"
              "# Accents\n"
              "231 111  81\tUntitled\n"
              "255 255 255\tPaper\n");
    const Palette back = decodeGIMP(text);
    EXPECT_EQ(back.name, "Harbour Dusk");
    EXPECT_EQ(back.colors, (std::vector<Color>{palette.colors[0], palette.colors[1], Color::rgb255(233, 196, 106, 255, "Lamp light"),
                                               Color::rgb255(231, 111, 81), Color::rgb(1, 1, 1, 1, "Paper")}));
    EXPECT_TRUE(back.groups.empty());
}

TEST(GIMPCoderTest, ShortFilesArePaddedForKrita) {
    const std::string text = coder(PaletteFormat::gimp)->encode(Palette("Tiny"));
    EXPECT_EQ(text, "GIMP Palette\nName: Tiny\nColumns: 0\n#\n# Palette written by Kro\n");
    EXPECT_GE(text.size(), 50u);
}

TEST(GIMPCoderTest, ReadsTolerantly) {
    // Padding, indented comments, a header key GIMP does not know, "Untitled" as no name, a value above 255.
    const Palette palette = decodeGIMP(
        "GIMP Palette\n"
        "Name:   Mixed  \n"
        "Columns: not a number\n"
        "Generator: somewhere\n"
        "  # indented comment\n"
        "12\t34  56     Several words  here  \n"
        "300 0 0 Untitled\n");
    EXPECT_EQ(palette.name, "Mixed");
    EXPECT_EQ(palette.colors, (std::vector<Color>{Color::rgb255(12, 34, 56, 255, "Several words  here"), Color::rgb255(255, 0, 0)}));
}

TEST(GIMPCoderTest, ReadsAsepritesRGBAExtension) {
    const Palette palette = decodeGIMP("GIMP Palette\nChannels: RGBA\n#\n  0   0   0   0\tUntitled\n255 255 255 128\tHalf\n");
    ASSERT_EQ(palette.colors.size(), 2u);
    EXPECT_EQ(palette.colors[0].alpha, 0.0);
    EXPECT_EQ(palette.colors[1], Color::rgb255(255, 255, 255, 128, "Half"));
}

TEST(GIMPCoderTest, RefusesWhatIsNotAGIMPPalette) {
    for (const char* text : {"", "GIMP", " GIMP Palette\n", "GIMP Palette\nChannels: CMYK\n"})
        expectCommonError(Case::invalidFormat, [text] { decodeGIMP(text); });
    // Lines that are not colours are refused rather than read as black.
    for (const char* body : {"12 34\n", "1 2 x3\n", "-1 2 3\n", "0x1F 0 0\n", "1e3 0 0\n", "1 2 3\nFoo: bar\n", "1,2,3 comma\n"})
        expectCommonError(Case::invalidFormat, [body] { decodeGIMP(std::string("GIMP Palette\nName: X\n") + body); });
}

// Every palette GIMP, Inkscape and Krita ship reads and writes back; two are checked entry by entry at their ends.
TEST(GIMPCoderTest, EveryPaletteGIMPInkscapeAndKritaShipReadsAndWritesBack) {
    const Palette tango = decodeGIMP(realFile("gimp-data/Tango.gpl"));
    EXPECT_EQ(tango.name, "Tango Icon Theme");
    ASSERT_EQ(tango.colors.size(), 27u);
    EXPECT_EQ(tango.colors[0], Color::rgb255(252, 233, 79, 255, "Butter 1"));
    EXPECT_EQ(tango.colors[26], Color::rgb255(46, 52, 54, 255, "Aluminium 6"));
    const Palette inkscape = decodeGIMP(realFile("inkscape/inkscape.gpl"));
    EXPECT_EQ(inkscape.name, "Inkscape default");
    ASSERT_EQ(inkscape.colors.size(), 431u);
    EXPECT_EQ(inkscape.colors[1], Color::rgb255(26, 26, 26, 255, "90% Gray"));
    EXPECT_TRUE(inkscape.colors.back().name.empty());

    size_t files = 0;
    for (const auto* package : {"gimp-data", "inkscape", "krita-data"}) {
        size_t inPackage = 0;
        for (const auto& entry : std::filesystem::directory_iterator(realPalettes() / package)) {
            if (entry.path().extension() != ".gpl") continue;
            ++inPackage;
            const auto name = entry.path().filename().string();
            Palette palette;
            try {
                palette = decodeGIMP(readFile(entry.path()));
            } catch (const std::exception& error) {
                ADD_FAILURE() << package << "/" << name << ": " << error.what();
                continue;
            }
            EXPECT_FALSE(palette.colors.empty()) << package << "/" << name;
            const Palette back = decodeGIMP(coder(PaletteFormat::gimp)->encode(palette));
            EXPECT_EQ(back.name, palette.name) << package << "/" << name;
            EXPECT_EQ(back.colors, palette.colors) << package << "/" << name;
        }
        EXPECT_GT(inPackage, 0u) << "no palettes fetched from " << package;
        files += inPackage;
    }
    EXPECT_GT(files, 30u);
}
