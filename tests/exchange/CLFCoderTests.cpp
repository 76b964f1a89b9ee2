#include <cmath>

#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto clfCoder = makeCLFCoder();
using Case = CommonError::Case;

// Named "L": white named "W".
const std::string white = hexBytes("89434C46 0100 01000000 4C 01000000 01000000 57"
                                   "0000000000005940 0000000000000000 0000000000000000 000000000000F03F");
}  // namespace

TEST(CLFCoder, WritesAndReadsTheExactBytesOfASmallList) {
    const Palette palette("L", {Color::lab(100, 0, 0, 1, "W")});
    EXPECT_EQ(hexOf(clfCoder->encode(palette)), hexOf(white));
    const auto read = clfCoder->decode(white);
    EXPECT_EQ(read.name, "L");
    EXPECT_EQ(read.colors, palette.colors);
}

TEST(CLFCoder, RoundTripKeepsLabExactlyAndConvertsTheRest) {
    const Color rgb = Color::rgb(0.9, 0.2, 0.1, 0.5, "rgb");
    const Palette palette("Ω list", {Color::lab(53.2408, -80.0925, 67.2032, 0.25, "Grün")}, {Group("g", {rgb})});
    const auto read = clfCoder->decode(clfCoder->encode(palette));
    EXPECT_EQ(read.name, palette.name);
    EXPECT_TRUE(read.groups.empty());
    ASSERT_EQ(read.colors.size(), 2u);
    EXPECT_EQ(read.colors[0].colorComponents, palette.colors[0].colorComponents) << "bit for bit";
    EXPECT_EQ(read.colors[0], palette.colors[0]);
    const auto lab = rgb.lab();
    EXPECT_EQ(read.colors[1], Color::lab(lab.lf, lab.af, lab.bf, 0.5, "rgb"));
}

TEST(CLFCoder, Refusals) {
    auto infinite = white, negativeAlpha = white;
    infinite.replace(infinite.size() - 32, 8, hexBytes("000000000000F07F"));
    negativeAlpha.back() = '\xBF';
    expectRefused(*clfCoder,
                  {// A Common LUT Format file shares the extension.
                   {"<?xml version=\"1.0\"?>\n<ProcessList id=\"x\" compCLFversion=\"3\"/>", Case::invalidFormat},
                   {hexBytes("89434C46 0300 00000000 00000000"), Case::invalidVersion},
                   {white + '\0', Case::invalidFormat},
                   {white.substr(0, white.size() - 1), Case::invalidEndOfFile},
                   {hexBytes("89434C46 0100 00000000 FFFFFFFF"), Case::invalidEndOfFile},
                   {infinite, Case::invalidFormat},
                   {negativeAlpha, Case::invalidFormat}});
    EXPECT_EQ(commonError([] { clfCoder->encode(Palette("", {Color::lab(std::nan(""), 0, 0)})); }), Case::invalidFormat);
}
