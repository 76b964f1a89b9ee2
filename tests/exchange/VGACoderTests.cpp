#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto vga24 = makeVGA24BitCoder();
const auto vga18 = makeVGA18BitCoder();
}  // namespace

TEST(VGACoders, ReadRunsOfTriples) {
    const auto deep = vga24->decode(hexBytes("FF 00 80 00 00 00"));
    EXPECT_EQ(deep.format, PaletteFormat::vga24bit);
    ASSERT_EQ(deep.colors.size(), 2u);
    expectComponents(deep.colors[0], ColorSpace::RGB, {1, 0, 128 / 255.0});

    const auto red = vga18->decode(hexBytes("3F 00 00"));
    EXPECT_EQ(red.format, PaletteFormat::vga18bit);
    EXPECT_EQ(red.colors.at(0), Color::rgb(1, 0, 0));
    expectComponents(vga18->decode(hexBytes("FF 20 01")).colors.at(0), ColorSpace::RGB, {1, 32 / 63.0, 1 / 63.0});

    for (const auto& coder : {vga24.get(), vga18.get()}) {
        EXPECT_EQ(commonError([&] { coder->decode(std::string(10, '\0')); }), CommonError::Case::invalidFormat);
        EXPECT_TRUE(coder->decode("").colors.empty());
    }
}

TEST(VGACoders, WriteEveryColourAsRoundedBytes) {
    const Palette palette("", {Color::rgb(1, 0.5, 0, 0.1, "n")}, {Group("g", {Color::rgb(0.2, 0.4, 0.6), Color::lab(100, 0, 0)})});
    EXPECT_EQ(hexOf(vga24->encode(palette)), "FF 80 00 33 66 99 FF FF FF");
    // 0.5 x 63 = 31.5 rounds away from zero; 0.2 x 63 = 12.6 to 13.
    EXPECT_EQ(hexOf(vga18->encode(palette)).substr(0, 17), "3F 20 00 0D 19 26");
    const auto read = vga18->decode(vga18->encode(palette));
    ASSERT_EQ(read.colors.size(), 3u);
    EXPECT_EQ(read.colors[0].alpha, 1);
    EXPECT_TRUE(read.groups.empty());
}
