#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto riffCoder = makeRIFFCoder();
using Case = CommonError::Case;
}  // namespace

TEST(RIFFCoder, WritesTheSimpleFormAndReadsItBack) {
    const Palette palette({}, {Color::rgb(1, 0, 0, 0.5, "red")}, {Group("g", {Color::cmyk(1, 1, 0, 0)})});
    const auto bytes = riffCoder->encode(palette);
    EXPECT_EQ(hexOf(bytes.substr(0, 24)), hexOf(hexBytes("52 49 46 46 18 00 00 00 50 41 4C 20 64 61 74 61"
                                                         "0C 00 00 00 00 03 02 00")));
    EXPECT_EQ(hexOf(bytes.substr(24, 4)), "FF 00 00 00");
    const auto read = riffCoder->decode(bytes);
    EXPECT_EQ(read.format, PaletteFormat::riff);
    ASSERT_EQ(read.colors.size(), 2u);
    EXPECT_EQ(read.colors[0], Color::rgb(1, 0, 0)) << "names and alpha have no place in the file";
    EXPECT_EQ(riffCoder->decode(riffCoder->encode(Palette())).colors.size(), 0u);

    const Palette tooMany({}, std::vector<Color>(32768, Color::rgb(0, 0, 0)));
    EXPECT_EQ(commonError([&] { riffCoder->encode(tooMany); }), Case::indexOutOfRange);
}

TEST(RIFFCoder, ReadsEntriesAndDropsFlags) {
    // Sizes and version are not trusted; the flags byte is dropped.
    const auto read = riffCoder->decode(hexBytes("52494646 00000000 50414C20 64617461 FFFFFFFF 0001 0200"
                                                 "10 20 30 04  FF FF FF 02"));
    ASSERT_EQ(read.colors.size(), 2u);
    expectComponents(read.colors[0], ColorSpace::RGB, {0x10 / 255.0, 0x20 / 255.0, 0x30 / 255.0});
    EXPECT_EQ(read.colors[1].alpha, 1);
}

TEST(RIFFCoder, Refusals) {
    EXPECT_EQ(commonError([&] { riffCoder->decode(hexBytes("52494646 10000000 57415645 64617461 04000000 0003 0000")); }),
              Case::invalidFormat);
    EXPECT_EQ(commonError([&] { riffCoder->decode(hexBytes("52494658 10000000 50414C20 64617461 04000000 0003 0000")); }),
              Case::invalidFormat);
    EXPECT_EQ(commonError([&] { riffCoder->decode(hexBytes("52494646 10000000 50414C20 66616374 04000000 0003 0000")); }),
              Case::invalidFormat);
    EXPECT_EQ(commonError([&] { riffCoder->decode(hexBytes("52494646 10000000 50414C20 64617461 04000000 0003 FFFF")); }),
              Case::invalidIntegerValue);
    EXPECT_EQ(readerError([&] { riffCoder->decode(hexBytes("52494646 10000000 50414C20 64617461 04000000 0003 0200 FF0000")); }),
              BytesParser::ReaderError::endOfData);
}
