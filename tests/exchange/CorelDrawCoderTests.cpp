#include <gtest/gtest.h>

#include <regex>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

const auto corelCoder = coder(PaletteFormat::corelDraw);

namespace {

void expectSameColors(const std::vector<Color>& actual, const std::vector<Color>& expected, int precision) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i)
        EXPECT_TRUE(actual[i].isEqual(expected[i], precision)) << actual[i].debugDescription() << " != " << expected[i].debugDescription();
}

}  // namespace

TEST(CorelDrawCoderTest, WritesInksBeforeThePagesThatUseThem) {
    const Palette palette("Harbour", {Color::rgb255(26, 101, 151, 255, "Sea"), Color::cmyk(0.05, 0.1, 0.35, 0, 1, "Sand"),
                                      Color::gray(0.5, 1, "Mid grey"), Color::lab(52, -20.9, 37.75, 1, "Moss"),
                                      Color::cmyk(0, 0.55, 0.9, 0.05, 1, "HARBOUR ORANGE", ColorType::spot), Color::rgb(1, 1, 1, 0.5)},
                          {Group("Accents & more", {Color::rgb255(255, 111, 97, 255, "Coral")})});
    std::string written = corelCoder->encode(palette);
    const std::regex guid("guid=\"[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}\"");
    ASSERT_TRUE(std::regex_search(written, guid)) << written;
    written = std::regex_replace(written, guid, "guid=\"GUID\"");
    EXPECT_EQ(written,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<palette guid=\"GUID\" name=\"Harbour\">\n"
              "  <colorspaces>\n"
              "    <cs name=\"HARBOUR ORANGE\" fixedID=\"1\">\n"
              "      <color cs=\"CMYK\" tints=\"0,0.55,0.9,0.05\"/>\n"
              "      <color cs=\"RGB\" tints=\"0.91563,0.527198,0.217937\"/>\n"
              "    </cs>\n"
              "  </colorspaces>\n"
              "  <colors>\n"
              "    <page>\n"
              "      <color cs=\"RGB\" name=\"Sea\" tints=\"0.101961,0.396078,0.592157\"/>\n"
              "      <color cs=\"CMYK\" name=\"Sand\" tints=\"0.05,0.1,0.35,0\"/>\n"
              "      <color cs=\"Gray\" name=\"Mid grey\" tints=\"0.5\"/>\n"
              "      <color cs=\"LAB\" name=\"Moss\" tints=\"0.52,0.42,0.65\"/>\n"
              "      <color cs=\"HARBOUR ORANGE\" name=\"HARBOUR ORANGE\" tints=\"1\"/>\n"
              "      <color cs=\"RGB\" tints=\"1,1,1\"/>\n"
              "    </page>\n"
              "    <page name=\"Accents &amp; more\">\n"
              "      <color cs=\"RGB\" name=\"Coral\" tints=\"1,0.435294,0.380392\"/>\n"
              "    </page>\n"
              "  </colors>\n"
              "</palette>\n");
}

TEST(CorelDrawCoderTest, ReadsWhatItWritesWithGroupsAndEveryModel) {
    const Palette palette("Round trip", {Color::rgb255(26, 101, 151, 255, "Sea"), Color::cmyk(0.05, 0.1, 0.35, 0, 1, "Sand")},
                          {Group("Inks", {Color::cmyk(0, 0.55, 0.9, 0.05, 1, "Orange", ColorType::spot),
                                          Color::lab(64.37, 42.49, 63.91, 1, "Lab ink", ColorType::spot),
                                          Color::rgb(0.2, 0.4, 0.6, 1, "Orange", ColorType::spot)}),
                           Group("", {Color::gray(0.25, 1, "Dark"), Color::lab(52, -20.9, 37.75, 1, "Moss"), Color::rgb(0, 0, 0)})});
    const Palette back = corelCoder->decode(corelCoder->encode(palette));
    EXPECT_EQ(back.name, "Round trip");
    expectSameColors(back.colors, palette.colors, 5);
    ASSERT_EQ(back.groups.size(), 2u);
    EXPECT_EQ(back.groups[0].name, "Inks");
    EXPECT_EQ(back.groups[1].name, "");
    // The second ink of the same name is renamed, since inks are found by name.
    Group inks = palette.groups[0];
    inks.colors[2].name = "Orange 2";
    expectSameColors(back.groups[0].colors, inks.colors, 3);
    expectSameColors(back.groups[1].colors, palette.groups[1].colors, 3);

    // Without global colours, every page is a named group; an empty palette stays empty.
    expectExactPalette(corelCoder->decode(corelCoder->encode(Palette("", {}, {Group("Only", {Color::rgb(1, 0, 0)})}))),
                       Palette("", {}, {Group("Only", {Color::rgb(1, 0, 0)})}));
    expectExactPalette(corelCoder->decode(corelCoder->encode(Palette())), Palette());
}

// A library palette as CorelDRAW installs them: localised names, inks defined in Lab first,
// unnamed pages, tints of an ink, and entries other generators got wrong.
TEST(CorelDrawCoderTest, ReadsLibraryPalettes) {
    const Palette palette = corelCoder->decode(
        "<?xml version=\"1.0\"?>\n"
        "<palette guid=\"3f2a7c1e-58b4-4d0e-9a61-2c7d9e0b4f12\" resid=\"title\" locked=\"true\">\n"
        "<colorspaces>\n"
        "  <cs name=\"PANTONE 185 C\" fixedID=\"1\"><color cs=\"LAB\" tints=\"0.5,0.8,0.7\"/><color cs=\"RGB\" tints=\"1,0,0\"/></cs>\n"
        "  <cs name=\"Process ink\" fixedID=\"2\" process=\"1\"><color cs=\"Hexachrome\" tints=\"0,0,0,0,0,1\"/><color cs=\"CMYK\" tints=\"1,0,0,0\"/></cs>\n"
        "</colorspaces>\n"
        "<Colors>\n"
        "  <PAGE width=\"7\">\n"
        "    <color cs=\"PANTONE 185 C\" name=\"PANTONE 185 C\" tints=\"1\"/>\n"
        "    <color cs=\"Process ink\" tints=\"0.5\"/>\n"
        "    <color cs=\"RGB\" resid=\"sea\" tints=\"0.1, 0.4, 0.6\"/>\n"
        "    <color cs=\"RGB\" name=\"Short\" tints=\"0.1,0.4\"/>\n"
        "    <color cs=\"HSB\" name=\"Unknown model\" tints=\"0.1,0.4,0.5\"/>\n"
        "    <color cs=\"Missing ink\" name=\"Missing\" tints=\"1\"/>\n"
        "  </PAGE>\n"
        "  <page><color cs=\"Gray\" tints=\"0\"/><color cs=\"PANTONE 185 C\" tints=\"0.5\"/></page>\n"
        "</Colors>\n"
        "<localization>\n"
        "  <resource id=\"title\"><DE>Bibliothek</DE><EN>Library</EN></resource>\n"
        "  <resource id=\"sea\"><FR>Mer</FR></resource>\n"
        "</localization>\n"
        "</palette>\n");
    // Half of an ink is half its tint; "process" is no spot; Gray 0 is black.
    const double a = 0.8 * 255 - 128, b = 0.7 * 255 - 128;
    EXPECT_EQ(palette.name, "Library");
    EXPECT_TRUE(palette.colors.empty());
    ASSERT_EQ(palette.groups.size(), 2u);
    EXPECT_EQ(palette.groups[0].name, "Page 1");
    EXPECT_EQ(palette.groups[1].name, "Page 2");
    EXPECT_EQ(palette.groups[0].colors, (std::vector<Color>{Color::lab(50, a, b, 1, "PANTONE 185 C", ColorType::spot),
                                                            Color::cmyk(0.5, 0, 0, 0, 1, "Process ink"), Color::rgb(0.1, 0.4, 0.6, 1, "Mer")}));
    EXPECT_EQ(palette.groups[1].colors,
              (std::vector<Color>{Color::gray(0), Color::lab(75, a / 2, b / 2, 1, "PANTONE 185 C", ColorType::spot)}));
}

TEST(CorelDrawCoderTest, PalettesThatOnlyDefineInksAreTheirInks) {
    const Palette palette = corelCoder->decode(
        "<palette prefix=\"TRUMATCH \"><colorspaces>"
        "<cs name=\"Thread 1\"><color cs=\"CMYK\" tints=\"0,1,0,0\"/><color cs=\"RGB\" tints=\"1,0,1\"/></cs>"
        "<cs name=\"Thread 2\" process=\"x\"><color cs=\"Gray\" tints=\"0.5\"/></cs>"
        "<cs name=\"Thread 1 (2)\"><color cs=\"RGB\" tints=\"0,0,0\"/></cs>"
        "</colorspaces><colors/></palette>");
    EXPECT_EQ(palette.name, "TRUMATCH");
    EXPECT_EQ(palette.colors, (std::vector<Color>{Color::cmyk(0, 1, 0, 0, 1, "Thread 1", ColorType::spot), Color::gray(0.5, 1, "Thread 2")}));
}

TEST(CorelDrawCoderTest, RefusesWhatIsNotACorelPalette) {
    for (const char* text : {"", "<palette>", "<colorBook><bookName>x</bookName></colorBook>"})
        expectCommonError(Case::invalidFormat, [text] { corelCoder->decode(text); });
}
