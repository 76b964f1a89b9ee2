#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto clsCoder = makeClipStudioPaintCoder();
using Case = CommonError::Case;

// Set "Demo": red named "Red", then Clip Studio Paint's unnamed transparent swatch.
const std::string demoSet = hexBytes(
    "53 4C 43 43 00 01 10 00 00 00 04 00 44 65 6D 6F"
    "00 00 00 00 04 00 44 65 6D 6F 04 00 00 00 02 00"
    "00 00 20 00 00 00 10 00 00 00 FF 00 00 FF 01 00"
    "00 00 06 00 52 00 65 00 64 00 08 00 00 00 00 00"
    "00 00 00 00 00 00");

// A set named "S" with the given count, record byte total and records.
std::string set(std::string_view countHex, std::string_view totalHex, std::string_view recordsHex) {
    return hexBytes("534C4343 0001 0A000000 0100 53 00000000 0100 53 04000000") + hexBytes(countHex) + hexBytes(totalHex) +
           hexBytes(recordsHex);
}
}  // namespace

TEST(ClipStudioPaintCoder, WritesAndReadsTheExactBytesOfASmallSet) {
    const Palette palette("Demo", {Color::rgb(1, 0, 0, 1, "Red"), Color::rgb(0.2, 0.4, 0.6, 0)});
    EXPECT_EQ(hexOf(clsCoder->encode(palette)), hexOf(demoSet));

    const auto read = clsCoder->decode(demoSet);
    EXPECT_EQ(read.name, "Demo");
    // Clip Studio Paint's transparent swatch is all zero.
    EXPECT_EQ(read.colors, (std::vector<Color>{Color::rgb(1, 0, 0, 1, "Red"), Color::rgb(0, 0, 0, 0)}));
}

TEST(ClipStudioPaintCoder, RoundTripFlattensGroupsConvertsSpacesAndKeepsUnicodeNames) {
    Palette palette("日本語 ☂", {Color::rgb255(10, 20, 30, 255, "Ünïcode 😀")},
                    {Group("g", {Color::cmyk(0, 1, 1, 0, 1, "cmyk"), Color::gray(0.5, 0.4)})});
    const auto bytes = clsCoder->encode(palette);
    const auto read = clsCoder->decode(bytes);
    EXPECT_EQ(read.name, palette.name);
    EXPECT_TRUE(read.groups.empty());
    ASSERT_EQ(read.colors.size(), 3u);
    EXPECT_EQ(read.colors[0], palette.colors[0]);
    EXPECT_EQ(read.colors[1].name, "cmyk");
    expectComponents(read.colors[1], ColorSpace::RGB, {1, 0, 0}, 0.3);
    EXPECT_EQ(read.colors[2].alpha, 1) << "any alpha but none is opaque";
    // The legacy copy of the name is Shift-JIS; the umbrella has no Shift-JIS form and becomes a space.
    EXPECT_NE(bytes.find("\x93\xFA\x96\x7B\x8C\xEA \x20", 12), std::string::npos);
}

TEST(ClipStudioPaintCoder, NamesAreCutToClipStudioPaintsLimitsAtWholeCharacters) {
    const std::string longName = std::string(63, 'a') + "😀";  // the emoji needs units 64 and 65
    const auto read = clsCoder->decode(clsCoder->encode(Palette(std::string(70, 'n'), {Color::rgb(0, 0, 0, 1, longName)})));
    EXPECT_EQ(read.name, std::string(64, 'n'));
    EXPECT_EQ(read.colors[0].name, std::string(63, 'a'));
}

TEST(ClipStudioPaintCoder, ReadsWhatClipStudioPaintTolerates) {
    // A 4-byte record (colour only), a record longer than needed, and a name cut inside a surrogate pair.
    const auto read = clsCoder->decode(set("03000000", "28000000",
                                           "04000000 01020380"
                                           "0C000000 040506FF 00000000 00000000"
                                           "0C000000 070809FF 01000000 0200 3DD8"));
    EXPECT_EQ(read.name, "S");
    // A lone surrogate reads as U+FFFD.
    EXPECT_EQ(read.colors,
              (std::vector<Color>{Color::rgb255(1, 2, 3), Color::rgb255(4, 5, 6), Color::rgb255(7, 8, 9, 255, "\xEF\xBF\xBD")}));

    // Without a UTF-8 copy, the legacy name is read as Shift-JIS.
    const auto legacy = clsCoder->decode(hexBytes("534C4343 0001 0C000000 0400 93FA967B 00000000 0000 04000000 00000000 00000000"));
    EXPECT_EQ(legacy.name, "日本");
}

TEST(ClipStudioPaintCoder, Refusals) {
    expectRefused(*clsCoder,
                  {{"SLC", Case::invalidFormat},
                   {hexBytes("534C4358 0001 0A000000"), Case::invalidFormat},
                   // The name block's length disagrees with the two names.
                   {hexBytes("534C4343 0001 0B000000 0100 53 00000000 0100 53 04000000 00000000 00000000"), Case::invalidFormat},
                   // A name length beyond the file.
                   {hexBytes("534C4343 0001 0A000000 FFFF 53"), Case::invalidEndOfFile},
                   // Record bytes beyond the file; more records than the bytes can hold; a record beyond the total;
                   // records that do not fill the total; a name beyond its record; a cut header.
                   {set("01000000", "FFFFFFFF", "04000000 01020380"), Case::invalidEndOfFile},
                   {set("FFFFFFFF", "08000000", "04000000 01020380"), Case::invalidFormat},
                   {set("01000000", "08000000", "05000000 0102038000"), Case::invalidFormat},
                   {set("01000000", "0C000000", "04000000 01020380 00000000"), Case::invalidFormat},
                   {set("01000000", "0E000000", "0A000000 01020380 01000000 0400"), Case::invalidFormat},
                   {hexBytes("534C4343 0001 0A000000 0100 53 00000000 0100 53 0400"), Case::invalidEndOfFile}});
    EXPECT_EQ(commonError([] { clsCoder->encode(Palette("", {Color::rgb(0, 0, 0, 1, "\xFF")})); }), Case::invalidString);
}
