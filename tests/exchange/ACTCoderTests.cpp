#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto actCoder = makeACTCoder();

std::string table(size_t trailerBytes = 0, std::string_view trailerHex = "") {
    std::string bytes(768, '\0');
    bytes[0] = '\xFF';          // red
    bytes[4] = '\x80';          // half green
    bytes[767] = '\x01';        // last blue
    return bytes + hexBytes(trailerHex).substr(0, trailerBytes);
}
}  // namespace

TEST(ACTCoder, ReadsTheTableAndItsOptionalTrailer) {
    const auto whole = actCoder->decode(table());
    EXPECT_EQ(whole.format, PaletteFormat::act);
    ASSERT_EQ(whole.colors.size(), 256u);
    expectComponents(whole.colors[0], ColorSpace::RGB, {1, 0, 0});
    expectComponents(whole.colors[1], ColorSpace::RGB, {0, 128 / 255.0, 0});
    expectComponents(whole.colors[255], ColorSpace::RGB, {0, 0, 1 / 255.0});

    EXPECT_EQ(actCoder->decode(table(2, "0003")).colors.size(), 3u);
    const auto transparent = actCoder->decode(table(4, "0003 0001"));
    ASSERT_EQ(transparent.colors.size(), 3u);
    EXPECT_EQ(transparent.colors[0].alpha, 1);
    EXPECT_EQ(transparent.colors[1].alpha, 0);
    EXPECT_EQ(actCoder->decode(table(4, "0003 0003")).colors[2].alpha, 1) << "an index past the kept colors";
    EXPECT_EQ(actCoder->decode(table(4, "FFFF FFFF")).colors.size(), 256u) << "a negative count keeps the table";
    EXPECT_EQ(actCoder->decode(table(3, "0002 00")).colors.size(), 2u) << "half a transparent index is none";

    EXPECT_EQ(readerError([&] { actCoder->decode(std::string(767, '\0')); }), BytesParser::ReaderError::endOfData);
}

TEST(ACTCoder, WritesTheTableAndACountWhenShort) {
    const Palette two({}, {Color::rgb(1, 0.5, 0, 0.2)}, {Group("g", {Color::gray(1)})});
    const auto bytes = actCoder->encode(two);
    ASSERT_EQ(bytes.size(), 772u);
    EXPECT_EQ(hexOf(bytes.substr(0, 7)), "FF 80 00 FF FF FF 00") << "0.5 rounds half away from zero";
    EXPECT_EQ(bytes.substr(6, 762), std::string(762, '\0'));
    EXPECT_EQ(hexOf(bytes.substr(768)), "00 02 FF FF");
    const auto read = actCoder->decode(bytes);
    ASSERT_EQ(read.colors.size(), 2u);
    EXPECT_EQ(read.colors[0].alpha, 1) << "alpha is not stored";

    const Palette full({}, std::vector<Color>(300, Color::rgb(0, 0, 1)));
    const auto fullBytes = actCoder->encode(full);
    ASSERT_EQ(fullBytes.size(), 768u);
    EXPECT_EQ(actCoder->decode(fullBytes).colors.size(), 256u);
}
