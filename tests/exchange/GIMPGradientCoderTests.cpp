#include <gtest/gtest.h>

#include <sstream>

#include "ExchangeTestSupport.h"
#include "GradientTestSupport.h"
#include "exchange/coders/TextSupport.h"

using namespace PAL;
using namespace gradienttest;
using Case = CommonError::Case;

namespace {

Gradient decodeGGR(std::string_view text) {
    const Gradients list = decode(GradientsFormat::gimp, text);
    EXPECT_EQ(list.gradients.size(), 1u);
    return list.gradients.at(0);
}

std::string ggr(std::string_view segments, std::string_view count = "1") {
    return "GIMP Gradient\nName: Test\n" + std::string(count) + "\n" + std::string(segments);
}

}  // namespace

TEST(GIMPGradientCoderTest, WritesOneStraightSegmentPerPairOfStops) {
    EXPECT_EQ(encode(GradientsFormat::gimp, gradients({ember()})),
              "GIMP Gradient\n"
              "Name: Ember\n"
              "2\n"
              "0 0.25 0.5 0.2 0 0 1 1 0.4 0 0.75 0 0 0 0\n"
              "0.5 0.75 1 1 0.4 0 0.75 1 0.9333333333333333 0.5333333333333333 0.5 0 0 0 0\n");
    // A hard edge has no segment of its own; the ends are filled in; an empty name is written as GIMP does.
    EXPECT_EQ(encode(GradientsFormat::gimp, gradients({gradient("", {{0.5, "ff0000"}, {0.5, "0000ff"}})})),
              "GIMP Gradient\n"
              "Name: Untitled\n"
              "2\n"
              "0 0.25 0.5 1 0 0 1 1 0 0 1 0 0 0 0\n"
              "0.5 0.75 1 0 0 1 1 0 0 1 1 0 0 0 0\n");
}

TEST(GIMPGradientCoderTest, RoundTripsStopsHardEdgesAndAlpha) {
    const Gradient twoTone =
        decodeGGR(encode(GradientsFormat::gimp, gradients({gradient("Two Tone\nline", {{0.5, "ff0000"}, {0.5, "0000ff"}})})));
    EXPECT_EQ(twoTone.name, "Two Tone line");
    expectStops(twoTone, {{0, "ff0000"}, {0.5, "ff0000"}, {0.5, "0000ff"}, {1, "0000ff"}});
    expectSameStops(decodeGGR(encode(GradientsFormat::gimp, gradients({ember()}))), ember());
}

TEST(GIMPGradientCoderTest, SegmentsBecomeStopsExactlyWhereStopsCanHoldThem) {
    // An off-centre middle adds the mean colour there; a step jumps at its middle.
    expectStops(decodeGGR(ggr("0 0.2 1 0 0 0 1 1 1 1 0 0 0\n")), {{0, "000000"}, {0.2, "808080", 0.5}, {1, "ffffff", 0}}, 0.003);
    expectStops(decodeGGR(ggr("0 0.3 1 1 0 0 1 0 0 1 1 5 0\n")),
                {{0, "ff0000"}, {0.3, "ff0000"}, {0.3, "0000ff"}, {1, "0000ff"}});
    // Segments meeting with one colour share a stop; with two they make a hard edge. A zero-width segment is legal.
    expectStops(
        decodeGGR(ggr("0 0.25 0.5 0 0 0 1 1 1 1 1 0 0\n0.5 0.5 0.5 0 0 1 1 0 0 1 1 0 0\n0.5 0.75 1 1 1 1 1 0 0 0 1 0 0\n", "3")),
        {{0, "000000"}, {0.5, "ffffff"}, {0.5, "ffffff"}, {1, "000000"}});
}

TEST(GIMPGradientCoderTest, CurvesAndHSVRampsAreSampledCloseToGIMPsOwnCurve) {
    // Curved with the middle at 0.25: the 50 % mix is reached at 0.25, and at 0.5 it is 0.5^(ln 0.5 / ln 0.25) = 0.7071.
    const Gradient curved = decodeGGR(ggr("0 0.25 1 0 0 0 1 1 1 1 1 1 0\n"));
    EXPECT_GT(curved.stops.size(), 4u);
    EXPECT_NEAR(curved.colorAt(0.25).rf, 0.5, 1.0 / 255);
    EXPECT_NEAR(curved.colorAt(0.5).rf, std::sqrt(0.5), 1.0 / 255);
    // Sinusoidal: 0.5 - cos(pi t)/2 at 0.25.
    EXPECT_NEAR(decodeGGR(ggr("0 0.5 1 0 0 0 1 1 1 1 1 2 0\n")).colorAt(0.25).gf, 0.5 - std::cos(3.14159265 / 4) / 2, 1.0 / 255);
    // Red to red around the hue circle: a whole turn, counter-clockwise through green, clockwise through blue.
    const Gradient ccw = decodeGGR(ggr("0 0.5 1 1 0 0 1 1 0 0 1 0 1\n"));
    EXPECT_TRUE(sameRGBA(ccw.colorAt(1.0 / 3), {0, 1, 0, 1}, 2.0 / 255));
    EXPECT_TRUE(sameRGBA(ccw.colorAt(2.0 / 3), {0, 0, 1, 1}, 2.0 / 255));
    const Gradient cw = decodeGGR(ggr("0 0.5 1 1 0 0 1 1 0 0 1 0 2\n"));
    EXPECT_TRUE(sameRGBA(cw.colorAt(1.0 / 3), {0, 0, 1, 1}, 2.0 / 255));
}

TEST(GIMPGradientCoderTest, ReadsOlderAndOtherProgramsFilesTolerantly) {
    // No name line (before GIMP 2.2), CR LF, six-decimal drift at the joins, Krita's endpoint types
    // (a "transparent foreground" end has no alpha), colours out of range held in range.
    const Gradient old = decodeGGR(
        "GIMP Gradient\r\n2\r\n0.000000 0.250000 0.333333 0 0 0 1 1 1 1 1 0 0 0 2\r\n"
        "0.3333330000001 0.6 1.0000000001 1 1 1 1 1.5 -1 0 1 0 0 0 0\r\n");
    EXPECT_EQ(old.name, "");
    expectStops(
        old,
        {{0, "000000"}, {0.25, "808080", 0.5}, {0.333333, "ffffff", 0}, {0.333333, "ffffff"}, {0.6, "ff8080"}, {1, "ff0000"}},
        0.003);
    EXPECT_EQ(decodeGGR("GIMP Gradient\nName: Untitled\n1\n0 0.5 1 0 0 0 1 1 1 1 1 0 0\n").name, "");
}

TEST(GIMPGradientCoderTest, RefusesWhatGIMPRefuses) {
    const std::string line = "0 0.5 1 0 0 0 1 1 1 1 1 0 0\n";
    for (const std::string& text :
         {std::string(""), ggr(line, "0"), ggr(line, "2"), ggr(line, "x"),
          ggr("0 0.5 1 0 0 0 1 1 1 1 1 0\n"), ggr("0 0.5 1 0 0 0 1 1 1 1 1 0 0 0\n"), ggr("0 0.5 1 0 0 0 1 1 1 1 1 6 0\n"),
          ggr("0 0.5 1 0 0 0 1 1 1 1 1 0 3\n"), ggr("0 0.5 1 0 0 0 1 1 1 1 1 0 0 5 0\n"), ggr("0 0.5 1 0 0 0 1 1 1 1 x 0 0\n"),
          ggr("0 0.7 0.5 0 0 0 1 1 1 1 1 0 0\n0.5 0.6 1 0 0 0 1 1 1 1 1 0 0\n", "2"), ggr("0.1 0.5 1 0 0 0 1 1 1 1 1 0 0\n"),
          ggr("0 0.5 0.9 0 0 0 1 1 1 1 1 0 0\n"), ggr("0 0.2 0.4 0 0 0 1 1 1 1 1 0 0\n0.5 0.6 1 0 0 0 1 1 1 1 1 0 0\n", "2")})
        expectCommonError(Case::invalidFormat, [&] { decode(GradientsFormat::gimp, text); });
}

namespace {

// The file as a plain reader sees it: the count on its line, then one line of numbers per segment.
struct FileSegments {
    long long count = 0;
    std::vector<std::vector<double>> lines;
};

FileSegments plainReading(const std::string& text) {
    std::istringstream in(text);
    std::string line;
    std::getline(in, line);
    std::getline(in, line);
    if (line.rfind("Name:", 0) == 0) std::getline(in, line);
    FileSegments file;
    file.count = std::stoll(line);
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::vector<double> numbers;
        for (double value; fields >> value;) numbers.push_back(value);
        if (!numbers.empty()) file.lines.push_back(numbers);
    }
    return file;
}

bool hasStop(const Gradient& g, double position, RGB color) {
    for (const auto& stop : g.stops)
        if (std::abs(stop.position - position) < 1e-5 && sameRGBA(stop.color.rgb(), color, 1e-5)) return true;
    return false;
}

}  // namespace

TEST(GIMPGradientCoderTest, EveryGradientGIMPAndKritaShipOpensWithItsSegments) {
    std::size_t files = 0;
    for (const auto* package : {"gimp-data", "krita-data"}) {
        for (const auto& entry : std::filesystem::directory_iterator(realPalettes() / package)) {
            if (entry.path().extension() != ".ggr") continue;
            ++files;
            const std::string name = entry.path().filename().string(), text = readFile(entry.path());
            const FileSegments file = plainReading(text);
            ASSERT_EQ(file.lines.size(), static_cast<std::size_t>(file.count)) << name;
            Gradient g;
            try {
                g = decodeGGR(text);
            } catch (const std::exception& error) {
                ADD_FAILURE() << name << ": " << error.what();
                continue;
            }
            EXPECT_EQ(g.stops.front().position, 0) << name;
            EXPECT_EQ(g.stops.back().position, 1) << name;
            // Every segment's two ends are stops with the segment's own colours (an end of a "transparent"
            // foreground or background kind has no alpha), except where the middle sits on the end: then
            // the end's own colour lasts for no width, and the half mix follows at once.
            for (const auto& s : file.lines) {
                const bool types = s.size() == 15;
                const RGB left{s[3], s[4], s[5], types && (s[13] == 2 || s[13] == 4) ? 0 : s[6]};
                const RGB right{s[7], s[8], s[9], types && (s[14] == 2 || s[14] == 4) ? 0 : s[10]};
                EXPECT_TRUE(s[1] == s[0] || hasStop(g, s[0], left)) << name << " segment at " << s[0];
                EXPECT_TRUE(s[1] == s[2] || hasStop(g, s[2], right)) << name << " segment ending at " << s[2];
            }
            // What we write reads back as the same gradient over the whole range.
            const Gradient again = decodeGGR(encode(GradientsFormat::gimp, gradients({g})));
            for (int i = 0; i < 1000; ++i)
                ASSERT_TRUE(sameRGBA(again.colorAt(i / 1000.0), g.colorAt(i / 1000.0))) << name << " at " << i / 1000.0;
        }
    }
    EXPECT_EQ(files, 78u + 17u);
}
