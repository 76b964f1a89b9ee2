#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto acoCoder = makeACOCoder();
using Case = CommonError::Case;
}  // namespace

TEST(ACOCoder, WritesBothSectionsWithTerminatedNames) {
    const Palette palette({}, {Color::rgb(1, 0, 0, 1, "Red")});
    const std::string expected = hexBytes(
        "00 01 00 01 00 00 FF FF 00 00 00 00 00 00 00 02"
        "00 01 00 00 FF FF 00 00 00 00 00 00 00 00 00 04"
        "00 52 00 65 00 64 00 00");
    EXPECT_EQ(hexOf(acoCoder->encode(palette)), hexOf(expected));
    const auto read = acoCoder->decode(expected);
    EXPECT_EQ(read.format, PaletteFormat::aco);
    ASSERT_EQ(read.colors.size(), 1u);
    EXPECT_EQ(read.colors[0], palette.colors[0]);
}

TEST(ACOCoder, WritesEachSpaceAsPhotoshopRecords) {
    Palette palette({}, {Color::cmyk(1, 0.5, 0, 0.25)});
    palette.groups.push_back(Group("flattened", {Color::gray(0.5), Color::lab(100, 0, 0)}));
    const auto bytes = acoCoder->encode(palette);
    // Version 1 section: CMYK stored inverted; gray under the CMYK word; LAB as RGB.
    EXPECT_EQ(hexOf(bytes.substr(0, 26)), hexOf(hexBytes("0001 0003"
                                                         "0002 0000 8000 FFFF C000"
                                                         "0002 1388 0000 0000 0000"
                                                         "0000")));
    const auto read = acoCoder->decode(bytes);
    ASSERT_EQ(read.colors.size(), 3u);
    expectComponents(read.colors[0], ColorSpace::CMYK, {1, 32767 / 65535.0, 0, 16383 / 65535.0});
    // The written gray comes back as a CMYK colour.
    expectComponents(read.colors[1], ColorSpace::CMYK, {(5000 ^ 0xFFFF) / 65535.0, 1, 1, 1});
    EXPECT_EQ(read.colors[2].colorSpace, ColorSpace::RGB);

    const Palette tooMany({}, std::vector<Color>(65536, Color::rgb(0, 0, 0)));
    EXPECT_EQ(commonError([&] { acoCoder->encode(tooMany); }), Case::indexOutOfRange);
}

TEST(ACOCoder, ReadsEverySpace) {
    LogCapture log;
    const auto read = acoCoder->decode(hexBytes(
        "0001 0006"
        "0000 FFFF 8000 0000 0000"    // RGB
        "0001 0000 FFFF FFFF 0000"    // HSB: red
        "0002 0000 FFFF FFFF FFFF"    // CMYK, inverted: full cyan
        "0007 2710 F830 07D0 0000"    // LAB 100, a stored as -20 reads unsigned, 20
        "0008 1388 0000 0000 0000"    // gray 5000
        "0003 0001 0002 0003 0004"));  // a book colour: not portable
    ASSERT_EQ(read.colors.size(), 6u);
    expectComponents(read.colors[0], ColorSpace::RGB, {1, 32768 / 65535.0, 0});
    expectComponents(read.colors[1], ColorSpace::RGB, {1, 0, 0});
    expectComponents(read.colors[2], ColorSpace::CMYK, {1, 0, 0, 0});
    expectComponents(read.colors[3], ColorSpace::LAB, {100, 635.36, 20});
    expectComponents(read.colors[4], ColorSpace::Gray, {0.5});
    expectComponents(read.colors[5], ColorSpace::RGB, {1, 0, 0});
    EXPECT_EQ(read.colors[5].alpha, 0.5);
    EXPECT_EQ(read.colors[5].name, "Unsupported Colorspace");
    for (const auto& color : read.colors) EXPECT_EQ(color.colorType, ColorType::global);
    EXPECT_TRUE(log.contains("ACOPaletteCoder: Unsupported color space HSB for color at index 1, converting to RGB..."));
    EXPECT_TRUE(log.contains("ACOPaletteCoder: Unknown color space for color at index 5, inserting placeholder..."));
}

TEST(ACOCoder, SectionsAndTheirGuardedReads) {
    // Version 2 names win over the nameless version 1 colours; the placeholder keeps its own name.
    const auto both = acoCoder->decode(hexBytes(
        "0001 0002 0000 0000 0000 0000 0000 0009 0000 0000 0000 0000"
        "0002 0002 0000 0000 0000 0000 0000 00000002 0041 0000"
        "          0009 0000 0000 0000 0000 00000001 0042"));
    ASSERT_EQ(both.colors.size(), 2u);
    EXPECT_EQ(both.colors[0].name, "A");
    EXPECT_EQ(both.colors[1].name, "Unsupported Colorspace");

    // Only a version 1 section, and a stray byte after it.
    EXPECT_EQ(acoCoder->decode(hexBytes("0001 0001 0000 FFFF FFFF FFFF 0000")).colors.size(), 1u);
    EXPECT_EQ(acoCoder->decode(hexBytes("0001 0001 0000 FFFF FFFF FFFF 0000 00")).colors.size(), 1u);
    // A file that starts with version 2 has its count taken for the second version word.
    EXPECT_TRUE(acoCoder->decode(hexBytes("0002 0001 0000 FFFF FFFF FFFF 0000 00000000")).colors.empty());
    EXPECT_TRUE(acoCoder->decode("").colors.empty());
    // Inside a section the reader's own failure ends the decode.
    EXPECT_EQ(readerError([&] { acoCoder->decode(hexBytes("0001 0002 0000 FFFF FFFF FFFF 0000")); }),
              BytesParser::ReaderError::endOfData);
    EXPECT_EQ(readerError([&] { acoCoder->decode(hexBytes("0001 0000 0002 0001 0000 0000 0000 0000 0000 FFFFFFFF")); }),
              BytesParser::ReaderError::endOfData);
}
