#include <gtest/gtest.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "GradientTestSupport.h"

using namespace PAL;
using namespace gradienttest;
using Case = CommonError::Case;

namespace {

std::vector<Gradient> decodeSVG(std::string_view text) { return decode(GradientsFormat::svg, text).gradients; }

std::string svg(std::string_view body) {
    return R"svg(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink"><defs>)svg" +
           std::string(body) + "</defs></svg>";
}

}  // namespace

TEST(SVGGradientCoderTest, WritesAttributesAlwaysWithOpacityAndAPreview) {
    EXPECT_EQ(encode(GradientsFormat::svg, gradients({ember()})),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"256\" height=\"32\">\n"
              "  <defs>\n"
              "    <linearGradient id=\"Ember\" x1=\"0%\" y1=\"0%\" x2=\"100%\" y2=\"0%\">\n"
              "      <title>Ember</title>\n"
              "      <stop offset=\"0\" stop-color=\"#330000\" stop-opacity=\"1\"/>\n"
              "      <stop offset=\"0.5\" stop-color=\"#ff6600\" stop-opacity=\"0.75\"/>\n"
              "      <stop offset=\"1\" stop-color=\"#ffee88\" stop-opacity=\"0.5\"/>\n"
              "    </linearGradient>\n"
              "  </defs>\n"
              "  <rect y=\"0\" width=\"256\" height=\"32\" fill=\"url(#Ember)\"/>\n"
              "</svg>\n");
}

TEST(SVGGradientCoderTest, RoundTripsSeveralGradientsTheirNamesAndAlpha) {
    const Gradients list = gradients({ember(), gradient("3 <Ember> & \"co\"", {{0.25, "000000", 0.2}, {0.25, "ffffff"}}),
                                      gradient("Ember", {{0, "123456"}, {1, "abcdef"}})});
    const std::string text = encode(GradientsFormat::svg, list);
    // Ids are XML names, unique in the file.
    EXPECT_NE(text.find("id=\"_3__Ember_____co_\""), std::string::npos);
    EXPECT_NE(text.find("id=\"Ember-2\""), std::string::npos);
    const auto back = decodeSVG(text);
    ASSERT_EQ(back.size(), 3u);
    EXPECT_EQ(back[1].name, "3 <Ember> & \"co\"");
    expectSameStops(back[0], ember(), 0.5 / 255);
    expectStops(back[1], {{0, "000000", 0.2}, {0.25, "000000", 0.2}, {0.25, "ffffff"}, {1, "ffffff"}}, 0.5 / 255);
}

TEST(SVGGradientCoderTest, ReadsStopsAsBrowsersDrawThem) {
    const auto list = decodeSVG(svg(
        R"svg(<linearGradient id="styled">)svg"
        R"svg(<stop offset="10%" style="stop-color: rgb(255, 0, 0); stop-opacity:0.5" stop-color="blue"/>)svg"
        R"svg(<stop offset="0.05" stop-color="#0F0 icc-color(P, 0.1, 0.2, 0.3)"/>)svg"
        R"svg(<stop offset="2" stop-color="rgba(0 0 255 / 50%)" stop-opacity="50%"/>)svg"
        R"svg(<stop stop-color="SteelBlue"/></linearGradient>)svg"
        R"svg(<radialGradient id="solid"><stop offset="0" stop-color="hsl(120, 100%, 25%)"/><stop offset="1" stop-color="currentColor"/></radialGradient>)svg"
        R"svg(<linearGradient id="copy" xlink:href="#styled" x1="0"/>)svg"
        R"svg(<g><linearGradient id="single"><stop offset="0" stop-color="red"/></linearGradient></g>)svg"));
    ASSERT_EQ(list.size(), 2u);  // the copy owns no stops; a single stop is no gradient
    EXPECT_EQ(list[0].name, "styled");
    // Style wins over the attribute; a lower offset is raised to the highest before it; offsets are clamped;
    // a missing offset is 0, raised too; the colour's own alpha multiplies the opacity.
    expectStops(list[0], {{0.1, "ff0000", 0.5}, {0.1, "00ff00"}, {1, "0000ff", 0.25}, {1, "4682b4"}}, 0.5 / 255);
    expectStops(list[1], {{0, "008000"}, {1, "000000"}}, 1.0 / 255);
}

TEST(SVGGradientCoderTest, RefusesDocumentsWithoutGradients) {
    binarytest::LogCapture log;
    for (const std::string& text : {std::string(), std::string("<svg"), svg(""),
                                    svg(R"svg(<linearGradient id="a"><stop stop-color="red"/></linearGradient>)svg")})
        expectCommonError(Case::invalidFormat, [&] { decodeSVG(text); });
    EXPECT_TRUE(log.contains("SVG Gradients: skipped \"a\", which has a single stop"));
}

TEST(SVGGradientCoderTest, ReadsInkscapesExampleOfGradients) {
    const std::string text = realFile("inkscape/gradient.svg");
    // An independent count: gradient elements, and the stops inside each.
    std::vector<std::size_t> stopCounts;
    for (std::size_t at = text.find("Gradient"); at != std::string::npos; at = text.find("Gradient", at + 1)) {
        const bool opens = text.compare(at - 7, 7, "<linear") == 0 || text.compare(at - 7, 7, "<radial") == 0;
        const std::size_t tagEnd = text.find('>', at);
        if (!opens || text[tagEnd - 1] == '/') continue;
        const std::size_t close = text.find("Gradient>", tagEnd);
        std::size_t stops = 0;
        for (std::size_t stop = text.find("<stop", tagEnd); stop < close; stop = text.find("<stop", stop + 1)) ++stops;
        if (stops >= 2) stopCounts.push_back(stops);
    }
    ASSERT_FALSE(stopCounts.empty());
    const auto list = decodeSVG(text);
    ASSERT_EQ(list.size(), stopCounts.size());
    for (std::size_t i = 0; i < list.size(); ++i) EXPECT_EQ(list[i].stops.size(), stopCounts[i]) << list[i].name;
    EXPECT_EQ(list[0].name, "linearGradient1162");
    expectStops(list[0], {{0, "00ff06", 0.086274512}, {0.56165564, "ffffff", 0.06666667}, {1, "ffffff", 0}});
}
