#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto jcwCoder = makeXaraCoder();
using Case = CommonError::Case;

std::string padded(std::string_view name, size_t width) {
    std::string field(name);
    field.resize(width, '\0');
    return field;
}
}  // namespace

TEST(XaraCoder, ReadsAndWritesTheExactBytesOfAnRGBPalette) {
    // As the notes give it: 16-byte names.
    const std::string sixteen = hexBytes(
        "4A 43 57 01 02 00 0A 10 10 27 00 00 00 00 00 00"
        "52 65 64 00 00 00 00 00 00 00 00 00 00 00 00 00"
        "00 00 00 00 10 27 00 00 42 6C 75 65 00 00 00 00"
        "00 00 00 00 00 00 00 00");
    const auto read = jcwCoder->decode(sixteen);
    EXPECT_EQ(read.colors, (std::vector<Color>{Color::rgb(1, 0, 0, 1, "Red"), Color::rgb(0, 0, 1, 1, "Blue")}));

    // Written with the 21-byte names of the published libraries.
    const std::string written = hexBytes("4A435701 0200 0A 15") + hexBytes("1027 0000 0000 0000") + padded("Red", 21) +
                                hexBytes("0000 0000 1027 0000") + padded("Blue", 21);
    EXPECT_EQ(hexOf(jcwCoder->encode(read)), hexOf(written));
}

TEST(XaraCoder, RoundTripKeepsCMYKAndSpotOnlyWhenTheWholePaletteHasThem) {
    const Palette cmyk("", {Color::cmyk(0.1, 0.2, 0.3, 0.4, 1, "a", ColorType::spot)},
                       {Group("g", {Color::cmyk(1, 0, 0, 0, 1, "b", ColorType::spot)})});
    const auto bytes = jcwCoder->encode(cmyk);
    EXPECT_EQ(bytes[6], '\x09') << "CMYK, spot, plain names";
    const auto read = jcwCoder->decode(bytes);
    EXPECT_EQ(read.colors, cmyk.allColors());

    // One RGB colour among them: all go out as RGB process colours; a long name widens every field.
    const std::string longName = "Größe €" + std::string(40, 'x');
    const Palette mixed("", {Color::cmyk(0, 0, 0, 1, 1, "k", ColorType::spot), Color::gray(0.5, 1, longName)});
    const auto mixedRead = jcwCoder->decode(jcwCoder->encode(mixed));
    ASSERT_EQ(mixedRead.colors.size(), 2u);
    expectComponents(mixedRead.colors[0], ColorSpace::RGB, {0, 0, 0}, 0.2);
    EXPECT_EQ(mixedRead.colors[0].colorType, ColorType::global);
    EXPECT_EQ(mixedRead.colors[1].name, "Größe ?" + std::string(40, 'x')) << "Latin-1 names; the euro sign has no place";
}

TEST(XaraCoder, ReadsPantoneLibrariesHSVAndOldFilesWithoutAWidth) {
    // Type 1: PANTONE, CMYK, spot; the width byte 0 as in old files, 16-byte names from the size.
    const auto pantone = jcwCoder->decode(hexBytes("4A435701 0100 01 00 0000 1027 1027 0000") + padded("185 C", 16));
    ASSERT_EQ(pantone.colors.size(), 1u);
    EXPECT_EQ(pantone.colors[0], Color::cmyk(0, 1, 1, 0, 1, "PANTONE 185 C", ColorType::spot));

    // Type 12: HSV process, hue as a fraction of a turn; a name filling its whole field.
    const auto hsv = jcwCoder->decode(hexBytes("4A435701 0100 0C 04 0D0D 1027 1027 0000") + "full");
    ASSERT_EQ(hsv.colors.size(), 1u);
    expectComponents(hsv.colors[0], ColorSpace::RGB, {0, 1, 0}, 0.01);
    EXPECT_EQ(hsv.colors[0].name, "full");
}

TEST(XaraCoder, LogsAndRefusals) {
    LogCapture log;
    const auto future = jcwCoder->decode(hexBytes("4A435702 0000 0A 15"));
    EXPECT_TRUE(future.colors.empty());
    EXPECT_TRUE(log.contains("JCW: Found untested version 2... decoder may not work", LogLevel::error));

    // Model bits 6 name no model: each colour is logged and left out.
    const auto unknown = jcwCoder->decode(hexBytes("4A435701 0200 0E 00 0000000000000000 0000000000000000"));
    EXPECT_TRUE(unknown.colors.empty());
    EXPECT_TRUE(log.contains("JCWCoder: Unsupported color type 14 at index 0"));
    EXPECT_TRUE(log.contains("JCWCoder: Unsupported color type 14 at index 1"));

    for (const std::string& bytes : {hexBytes("4A4357"), hexBytes("4A435801 0000 0A 15"),
                                    hexBytes("4A435701 0000 0A 15 00"),                  // nothing may follow no colours
                                    hexBytes("4A435701 0200 0A 15 0000000000000000 00"),  // 2 records cannot share 9 bytes
                                    hexBytes("4A435701 0100 0A 00 000000")}) {           // shorter than the components
        log.lines.clear();
        EXPECT_EQ(commonError([&] { jcwCoder->decode(bytes); }), Case::invalidFormat) << hexOf(bytes);
        EXPECT_TRUE(log.contains("JCWCoder: Invalid palette file", LogLevel::error));
    }

    EXPECT_EQ(commonError([] { jcwCoder->encode(Palette("", std::vector<Color>(65536, Color::rgb(0, 0, 0)))); }),
              Case::indexOutOfRange);
}
