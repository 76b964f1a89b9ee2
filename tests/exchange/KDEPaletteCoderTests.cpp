// KDE palettes: KDE's and KolourPaint's layouts, KDE's tolerant reading, and the colour schemes that
// share the extension.
#include <gtest/gtest.h>

#include <filesystem>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto kdeCoder = coder(PaletteFormat::koffice);

TEST(KDEPaletteCoderTest, WritesKDEsLayoutAndKolourPaintsWhenTranslucent) {
    const Palette opaque("Harbour Dusk", {Color::rgb255(23, 42, 58, 255, "Deep Water"), Color::rgb255(64, 112, 138)},
                         {Group("Warm", {Color::rgb255(233, 196, 106, 255, " Lamplight ")})});
    const std::string text = kdeCoder->encode(opaque);
    EXPECT_EQ(text, "KDE RGB Palette\n#Harbour Dusk\n23 42 58 Deep Water\n64 112 138\n233 196 106 Lamplight\n");
    const Palette back = kdeCoder->decode(text);
    EXPECT_EQ(back.name, "Harbour Dusk");
    EXPECT_EQ(back.colors, (std::vector<Color>{opaque.colors[0], opaque.colors[1], Color::rgb255(233, 196, 106, 255, "Lamplight")}));

    const Palette glass("", {Color::rgb255(231, 111, 81, 128, "Buoy"), Color::rgb255(0, 0, 0)});
    const std::string translucent = kdeCoder->encode(glass);
    EXPECT_EQ(translucent, "KDE RGBA Palette\n#\n231 111 81 128 Buoy\n0 0 0 255\n");
    EXPECT_EQ(kdeCoder->decode(translucent).colors, glass.colors);
}

TEST(KDEPaletteCoderTest, ReadsAsKDEDoes) {
    // KDE's own files separate the name with a tab; the description may span lines; values are clamped;
    // lines that do not start with three numbers are passed over.
    const Palette kde = kdeCoder->decode(
        "KDE RGB Palette\n#\n# Harbour Dusk \n#second description line\n"
        "255 255 255\tWhite\n  300 -5 7   Out  of range \nnot a color\n12 34\n1 2 3 4 Four is a name here\n");
    EXPECT_EQ(kde.name, "Harbour Dusk");
    EXPECT_EQ(kde.colors, (std::vector<Color>{Color::rgb255(255, 255, 255, 255, "White"), Color::rgb255(255, 0, 7, 255, "Out  of range"),
                                              Color::rgb255(1, 2, 3, 255, "4 Four is a name here")}));
    EXPECT_EQ(kdeCoder->decode("KDE RGBA Palette\n#\n1 2 3 4 Glass\n5 6 7 Opaque\n").colors,
              (std::vector<Color>{Color::rgb255(1, 2, 3, 4, "Glass"), Color::rgb255(5, 6, 7, 255, "Opaque")}));
}

TEST(KDEPaletteCoderTest, RefusesColourSchemesAndEmptyPalettes) {
    for (const char* text : {"", "[ColorEffects:Disabled]\nColor=56,56,56\n", "\n[General]\nName=Breeze\n",
                             "KDE RGB Palette\n#only a description\n", "KDE RGB Palette", "Palette\n1 2 3\n"})
        expectCommonError(Case::invalidFormat, [text] { kdeCoder->decode(text); });
}

// KDE's reader opens any palette whose first line holds " Palette", GIMP's among them.
TEST(KDEPaletteCoderTest, OpensGIMPsPalettesAsKDEDoes) {
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(realPalettes() / "gimp-data")) {
        if (entry.path().extension() != ".gpl") continue;
        ++files;
        const std::string text = readFile(entry.path());
        const Palette asGIMP = coder(PaletteFormat::gimp)->decode(text);
        const Palette asKDE = kdeCoder->decode(text);
        ASSERT_EQ(asKDE.colors.size(), asGIMP.colors.size()) << entry.path();
        for (std::size_t i = 0; i < asKDE.colors.size(); ++i)
            EXPECT_EQ(asKDE.colors[i].hexString(), asGIMP.colors[i].hexString()) << entry.path() << " #" << i;
        EXPECT_EQ(kdeCoder->decode(kdeCoder->encode(asKDE)).colors, asKDE.colors) << entry.path();
    }
    EXPECT_GT(files, 30u);
}
