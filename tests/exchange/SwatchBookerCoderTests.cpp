#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "ZipTestSupport.h"
#include "exchange/PaletteCoder.h"
#include "exchange/Zip.h"
#include "exchange/coders/TextSupport.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

std::string encodeBook(const Palette& palette) { return coder(PaletteFormat::swatchbooker)->encode(palette); }
Palette decodeBook(std::string_view bytes) { return coder(PaletteFormat::swatchbooker)->decode(bytes); }

std::string archived(std::string_view xml, std::string name = "swatchbook.xml") { return zip::write({{std::move(name), xml}}); }

constexpr std::string_view documentStart =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<SwatchBook version=\"0.7\"\n"
    "    xmlns:dc=\"http://purl.org/dc/elements/1.1/\"\n"
    "    xmlns:dcterms=\"http://purl.org/dc/terms/\"\n"
    "    xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n";

// A book around the given materials and book items.
Palette decodeMaterials(std::string_view materials, std::string_view book) {
    return decodeBook(archived(std::string(documentStart) + "<materials>" + std::string(materials) + "</materials><book>" +
                               std::string(book) + "</book></SwatchBook>"));
}

std::string material(std::string_view identifier, std::string_view values) {
    return "<color><metadata><dc:identifier>" + std::string(identifier) + "</dc:identifier></metadata>" + std::string(values) + "</color>";
}

}  // namespace

TEST(SwatchBookerCoderTest, WritesWhatSwatchBookerKritaAndScribusRead) {
    const Palette palette("Harbour & Sea", {Color::rgb255(26, 101, 151, 128, "Sea"), Color::lab(64.37, 42.49, 63.91)},
                          {Group("Accents", {Color::cmyk(0, 0.55, 0.9, 0.05, 1, "Sea", ColorType::spot)})});
    const std::string archive = encodeBook(palette);
    const zip::Reader reader(archive);
    ASSERT_EQ(reader.entries().size(), 1u);
    EXPECT_EQ(reader.entries()[0].method, 8);
    EXPECT_EQ(reader.read("swatchbook.xml").value_or(""),
              std::string(documentStart) +
                  "  <metadata>\n"
                  "    <dc:format>application/swatchbook</dc:format>\n"
                  "    <dc:type rdf:resource=\"http://purl.org/dc/dcmitype/Dataset\" />\n"
                  "    <dc:title>Harbour &amp; Sea</dc:title>\n"
                  "  </metadata>\n"
                  "  <materials>\n"
                  "    <color>\n"
                  "      <metadata>\n"
                  "        <dc:title>Sea</dc:title>\n"
                  "        <dc:identifier>Sea</dc:identifier>\n"
                  "      </metadata>\n"
                  "      <values model=\"RGB\">0.101961 0.396078 0.592157</values>\n"
                  "    </color>\n"
                  "    <color>\n"
                  "      <metadata>\n"
                  "        <dc:identifier>color2</dc:identifier>\n"
                  "      </metadata>\n"
                  "      <values model=\"Lab\">64.37 42.49 63.91</values>\n"
                  "    </color>\n"
                  "    <color usage=\"spot\">\n"
                  "      <metadata>\n"
                  "        <dc:title>Sea</dc:title>\n"
                  "        <dc:identifier>Sea 2</dc:identifier>\n"
                  "      </metadata>\n"
                  "      <values model=\"CMYK\">0 0.55 0.9 0.05</values>\n"
                  "    </color>\n"
                  "  </materials>\n"
                  "  <book>\n"
                  "    <swatch material=\"Sea\" />\n"
                  "    <swatch material=\"color2\" />\n"
                  "    <group>\n"
                  "      <metadata>\n"
                  "        <dc:title>Accents</dc:title>\n"
                  "      </metadata>\n"
                  "      <swatch material=\"Sea 2\" />\n"
                  "    </group>\n"
                  "  </book>\n"
                  "</SwatchBook>\n");
}

TEST(SwatchBookerCoderTest, KeepsNamesGroupsSpacesAndSpotColours) {
    const Palette palette("Round trip ✓", {Color::rgb(0.1, 0.2, 0.3, 1, "R & <D>"), Color::cmyk(0.1, 0.2, 0.3, 0.4, 1, "Ink", ColorType::spot)},
                          {Group("Greys", {Color::gray(0.25, 1, "Quarter"), Color::gray(0.25, 1, "Quarter")}),
                           Group("", {Color::lab(53.2, -12.5, 80.25, 1, "Lab  spaced ", ColorType::spot)})});
    const Palette back = decodeBook(encodeBook(palette));
    EXPECT_EQ(back.name, palette.name);
    EXPECT_EQ(back.format, PaletteFormat::swatchbooker);
    EXPECT_EQ(back.colors, palette.colors);
    ASSERT_EQ(back.groups.size(), 2u);
    EXPECT_EQ(back.groups[0].name, "Greys");
    EXPECT_EQ(back.groups[0].colors, palette.groups[0].colors) << "two colors of one name stay two";
    EXPECT_EQ(back.groups[1].name, "");
    EXPECT_EQ(back.groups[1].colors, palette.groups[1].colors);

    // What the format cannot hold: alpha; an unnamed colour comes back under its identifier.
    const Palette lossy = decodeBook(encodeBook(Palette("", {Color::rgb(1, 0, 0, 0.5), Color::rgb(0, 1, 0)})));
    EXPECT_EQ(lossy.name, "");
    EXPECT_EQ(lossy.colors, (std::vector{Color::rgb(1, 0, 0, 1, "color1"), Color::rgb(0, 1, 0, 1, "color2")}));
    EXPECT_TRUE(decodeBook(encodeBook(Palette("Empty"))).colors.empty());
}

TEST(SwatchBookerCoderTest, ReadsTheBookInItsOrder) {
    const Palette palette = decodeBook(archived(std::string(documentStart) + R"(
  <metadata>
    <dc:title xml:lang="fr">Port</dc:title>
    <dc:title>Harbour</dc:title>
  </metadata>
  <materials>
    <color usage="spot,other">
      <metadata><dc:identifier>sea </dc:identifier><dc:title xml:lang="de">Meer</dc:title></metadata>
      <values model="RGB">0 0 1</values>
    </color>
    <pattern><metadata><dc:identifier>stripes</dc:identifier></metadata></pattern>
    <color><metadata><dc:identifier>sand</dc:identifier><dc:title>Sand</dc:title></metadata><values model="RGB">1 1 0</values></color>
    <color><metadata><dc:identifier>unused</dc:identifier></metadata><values model="RGB">0 1 0</values></color>
  </materials>
  <book columns="4">
    <swatch material="sand"/>
    <break/>
    <group>
      <metadata><dc:title>Outer</dc:title></metadata>
      <swatch material="sea "/>
      <spacer/>
      <group>
        <metadata><dc:title>Inner</dc:title></metadata>
        <swatch material="sand"/>
        <swatch material="stripes"/>
        <swatch material="missing"/>
      </group>
      <swatch material="sand"/>
    </group>
    <swatch material="sea "/>
  </book>
</SwatchBook>)"));
    const Color sea = Color::rgb(0, 0, 1, 1, "Meer", ColorType::spot), sand = Color::rgb(1, 1, 0, 1, "Sand");
    EXPECT_EQ(palette.name, "Harbour") << "the title without a language";
    EXPECT_EQ(palette.colors, (std::vector{sand, sea}));
    ASSERT_EQ(palette.groups.size(), 2u);
    EXPECT_EQ(palette.groups[0].name, "Outer");
    EXPECT_EQ(palette.groups[0].colors, (std::vector{sea, sand}));
    EXPECT_EQ(palette.groups[1].name, "Outer / Inner");
    EXPECT_EQ(palette.groups[1].colors, (std::vector{sand}));

    // Without a book, the colours in the order they are defined.
    const Palette unordered = decodeBook(archived(std::string(documentStart) + "<materials>" + material("b", "<values model='RGB'>0 0 1</values>") +
                                                  material("a", "<values model='RGB'>1 0 0</values>") + "</materials></SwatchBook>"));
    EXPECT_EQ(unordered.colors, (std::vector{Color::rgb(0, 0, 1, 1, "b"), Color::rgb(1, 0, 0, 1, "a")}));
}

TEST(SwatchBookerCoderTest, ReadsEachModelThatMapsOntoOurs) {
    const auto only = [](std::string_view values) {
        const Palette palette = decodeMaterials(material("c", values), "<swatch material='c'/>");
        return palette.colors.empty() ? Color::rgb(0, 0, 0, 0, "nothing read") : palette.colors[0];
    };
    const auto expectNear = [](const Color& color, const Color& expected, double tolerance) {
        EXPECT_TRUE(color.isEqual(expected, 0) && color.colorSpace == expected.colorSpace) << color.debugDescription();
        for (std::size_t i = 0; i < expected.colorComponents.size() && i < color.colorComponents.size(); ++i)
            EXPECT_NEAR(color.colorComponents[i], expected.colorComponents[i], tolerance) << expected.debugDescription();
    };
    const Color red = Color::rgb(1, 0, 0, 1, "c");
    EXPECT_EQ(only("<values model='sRGB'>1 0 0</values>"), red);
    EXPECT_EQ(only("<values model='CMY'>0 1 1</values>"), red);
    EXPECT_EQ(only("<values model='HSV'>0.5 1 1</values>"), Color::rgb(0, 1, 1, 1, "c"));
    EXPECT_EQ(only("<values model='HLS'>0 0.5 1</values>"), red) << "hue, lightness, saturation in that order";
    EXPECT_EQ(only("<values model='GRAY'>0.25</values>"), Color::gray(0.75, 1, "c")) << "the amount of black";
    EXPECT_EQ(only("<values model='CMYK'>\n 1e-1\t0.2  0.3 0.4 </values>"), Color::cmyk(0.1, 0.2, 0.3, 0.4, 1, "c"));
    expectNear(only("<values model='LCH'>50 20 90</values>"), Color::lab(50, 0, 20, 1, "c"), 1e-9);
    expectNear(only("<values model='XYZ'>96.422 100 82.521</values>"), Color::lab(100, 0, 0, 1, "c"), 1e-9);
    expectNear(only("<values model='xyY'>0.3457 0.3585 100</values>"), Color::lab(100, 0, 0, 1, "c"), 0.1);
    // Several values: RGB before Lab before CMYK before gray, whatever their order; any other model only alone.
    EXPECT_EQ(only("<values model='CMYK'>0 0 0 1</values><values model='Lab'>50 0 0</values>"), Color::lab(50, 0, 0, 1, "c"));
    EXPECT_EQ(only("<values model='Lab'>50 0 0</values><values model='RGB'>1 0 0</values>"), red);
    EXPECT_EQ(only("<values model='HSV'>0 1 1</values><values model='GRAY'>1</values>"), Color::gray(0, 1, "c"));
    EXPECT_EQ(only("<values model='6CLR'>0 0 0 0 0 1</values><values model='HSV'>0 1 1</values>"), red);
    // A model we cannot map, or values that do not fit their model, leave the colour out.
    EXPECT_EQ(only("<values model='6CLR'>0 0 0 0 0 1</values>").name, "nothing read");
    EXPECT_EQ(only("<values model='RGB'>1 0</values>").name, "nothing read");
    EXPECT_EQ(only("<values model='RGB'>1 0 zero</values>").name, "nothing read");
    EXPECT_EQ(only("<values model='xyY'>0.3 0 100</values>").name, "nothing read");
}

TEST(SwatchBookerCoderTest, ReadsTheRALBookScribusShips) {
    const auto path = realPalettes() / "scribus-data/Wikipedia_RAL_Classic.sbz";
    const std::string bytes = realFile(path);
    if (bytes.empty()) return;  // reported by realFile
    const Palette palette = decodeBook(bytes);
    EXPECT_EQ(palette.name, "Wikipedia RAL CLASSIC");
    EXPECT_TRUE(palette.groups.empty());

    // The same book read by python3's zipfile and ElementTree: each swatch's identifier, usage and Lab.
    const ziptest::ScratchFolder folder;
    const auto independent = ziptest::python(folder.path(), R"(import sys, zipfile, xml.etree.ElementTree as ET
DC = '{http://purl.org/dc/elements/1.1/}'
root = ET.fromstring(zipfile.ZipFile(sys.argv[1]).read('swatchbook.xml'))
materials = {c.find('metadata/' + DC + 'identifier').text: c for c in root.find('materials')}
for swatch in root.find('book').iter('swatch'):
    color = materials[swatch.get('material')]
    print(swatch.get('material'), color.get('usage'), color.find('values').get('model'), *color.find('values').text.split(), sep='|')
)", "'" + path.string() + "'");
    ASSERT_EQ(independent.status, 0);
    std::istringstream lines(independent.output);
    std::size_t index = 0;
    for (std::string line; std::getline(lines, line); ++index) {
        const auto fields = textfile::fields(line, '|');
        ASSERT_EQ(fields.size(), 6u) << line;
        ASSERT_LT(index, palette.colors.size());
        const Color& color = palette.colors[index];
        EXPECT_EQ(color.name, fields[0]);
        EXPECT_EQ(color.colorType, fields[1] == "spot" ? ColorType::spot : ColorType::global) << line;
        ASSERT_EQ(fields[2], "Lab");
        binarytest::expectComponents(color, ColorSpace::LAB,
                                     {*textfile::number(fields[3]), *textfile::number(fields[4]), *textfile::number(fields[5])}, 1e-12);
    }
    EXPECT_EQ(index, 213u);
    EXPECT_EQ(palette.colors.size(), 213u);

    EXPECT_EQ(decodeBook(encodeBook(palette)).colors, palette.colors) << "what we write from it reads back the same";
}

TEST(SwatchBookerCoderTest, RefusesWhatIsNotASwatchBook) {
    const std::string book = std::string(documentStart) + "<materials/><book/></SwatchBook>";
    ASSERT_NO_THROW(decodeBook(archived(book)));
    for (const std::string& bytes : {
             book,                                          // not in an archive
             archived(book, "SwatchBook.xml"),              // the name is exact
             archived(book, "book/swatchbook.xml"),         // and at the root
             archived("<SwatchBook version='0.7'>"),        // broken XML
         })
        expectCommonError(Case::invalidFormat, [&] { decodeBook(bytes); });
}
