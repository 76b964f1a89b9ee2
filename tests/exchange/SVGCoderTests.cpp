#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "exchange/XmlTree.h"
#include "exchange/coders/SVGCoder.h"

using namespace PAL;
using namespace binarytest;

namespace {

struct Swatch {
    std::string fill, opacity, title, label;
    double x, y;
};

// Every swatch of a sheet in document order, read back through the XML parser.
std::vector<Swatch> swatches(const xml::Element& root) {
    std::vector<Swatch> out;
    for (const auto* cell : root.childrenNamed("svg")) {
        const auto* rect = cell->firstChild("rect");
        const auto* label = cell->firstChild("text");
        out.push_back({std::string(rect->attribute("fill").value_or("")), std::string(rect->attribute("fill-opacity").value_or("")),
                       cell->firstChild("title")->text, label ? label->text : "", std::stod(std::string(*cell->attribute("x"))),
                       std::stod(std::string(*cell->attribute("y")))});
    }
    return out;
}

std::vector<std::string> texts(const xml::Element& root) {
    std::vector<std::string> out;
    for (const auto* text : root.childrenNamed("text")) out.push_back(text->text);
    return out;
}

}  // namespace

TEST(SVGCoder, DrawsEverySwatchWithItsValueAndName) {
    std::vector<Color> many;
    for (int i = 0; i < 10; ++i) many.push_back(Color::rgb255(i * 25, 0, 0, 255, "Red " + std::to_string(i)));
    const Palette palette("Tea & <Biscuits>", {Color::rgb255(23, 42, 58, 255, "Deep \"Water\""), Color::rgb255(255, 255, 255, 127.5)},
                          {Group("Accents", {Color::cmyk(0, 0, 0, 1, 1, "Ink")}), Group("", many)});
    SVGCoder coder;
    const std::string svg = coder.encode(palette);
    const auto root = xml::parse(svg);  // throws if the names broke the document
    EXPECT_EQ(root->name, "svg");
    EXPECT_EQ(root->firstChild("title")->text, "Tea & <Biscuits>");
    EXPECT_EQ(texts(*root), (std::vector<std::string>{"Tea & <Biscuits>", "Accents"})) << "the unnamed group has no heading";

    const auto cells = swatches(*root);
    ASSERT_EQ(cells.size(), palette.totalColorCount());
    const auto all = palette.allColors();
    for (std::size_t i = 0; i < cells.size(); ++i) EXPECT_EQ(cells[i].fill, all[i].hexString(ColorByteFormat::rgb, true)) << i;
    EXPECT_EQ(cells[0].label, "Deep \"Water\"");
    EXPECT_EQ(cells[0].title, "Deep \"Water\" #172a3a");
    EXPECT_EQ(cells[1].opacity, "0.5");
    EXPECT_EQ(cells[1].title, "#ffffff") << "an unnamed color is titled by its value";
    EXPECT_EQ(cells[0].opacity, "");

    // Rows: the globals, the accents, then the ten reds wrapped after eight.
    EXPECT_EQ(cells[0].y, cells[1].y);
    EXPECT_LT(cells[1].y, cells[2].y);
    EXPECT_LT(cells[2].y, cells[3].y);
    EXPECT_EQ(cells[3].y, cells[10].y);
    EXPECT_EQ(cells[3].x, cells[11].x);
    EXPECT_LT(cells[10].y, cells[11].y);
    const double width = std::stod(std::string(*root->attribute("width")));
    const double height = std::stod(std::string(*root->attribute("height")));
    EXPECT_EQ(width, 16 + 8 * 64 + 7 * 8 + 16);
    EXPECT_GT(height, cells.back().y + 64);
    EXPECT_EQ(*root->attribute("viewBox"), "0 0 " + std::string(*root->attribute("width")) + " " + std::string(*root->attribute("height")));
}

TEST(SVGCoder, SettingsAndNamesFromAnyFile) {
    SVGCoder coder;
    coder.showNames = false;
    coder.swatchSize = {20, 10};
    coder.columns = 2;
    // A Latin-1 name from an old file and control characters XML cannot hold.
    const Palette palette("", {Color::rgb255(1, 2, 3, 255, "Gr\xFCn\x01"), Color::rgb255(4, 5, 6), Color::rgb255(7, 8, 9)});
    const auto root = xml::parse(coder.encode(palette));
    EXPECT_FALSE(root->firstChild("title"));
    const auto cells = swatches(*root);
    ASSERT_EQ(cells.size(), 3u);
    EXPECT_EQ(cells[0].title, "Grün #010203");
    EXPECT_EQ(cells[0].label, "") << "names hidden";
    EXPECT_EQ(cells[2].y - cells[0].y, 10 + 8) << "two columns, rows as tall as the swatch";

    coder.swatchSize = {0, 10};
    EXPECT_EQ(commonError([&] { coder.encode(palette); }), CommonError::Case::cannotCreateImage);
    EXPECT_NO_THROW(xml::parse(SVGCoder().encode(Palette())));
}
