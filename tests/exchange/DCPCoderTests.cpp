#include <cmath>
#include <sstream>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto dcpCoder = makeDCPCoder();
using Case = CommonError::Case;

// Named "P": an unnamed opaque RGB red, then group "G" with a spot grey of alpha 0.5 named "g".
const std::string small = hexBytes(
    "89444350 0100 01000000 50"
    "01000000 01 00 000000000000F03F 0000000000000000 0000000000000000 000000000000F03F 00000000"
    "01000000 01000000 47"
    "01000000 03 01 000000000000E03F 000000000000E03F 01000000 67");

// One RGB colour whose given bytes (space, type, numbers, name) follow the header and an empty name.
std::string oneColor(std::string_view colorHex, std::string_view tailHex = "00000000") {
    return hexBytes("89444350 0100 00000000 01000000") + hexBytes(colorHex) + hexBytes(tailHex);
}
}  // namespace

TEST(DCPCoder, WritesAndReadsTheExactBytesOfASmallPalette) {
    const Palette palette("P", {Color::rgb(1, 0, 0)}, {Group("G", {Color::gray(0.5, 0.5, "g", ColorType::spot)})});
    EXPECT_EQ(hexOf(dcpCoder->encode(palette)), hexOf(small));
    expectExactPalette(dcpCoder->decode(small), palette);
}

TEST(DCPCoder, RoundTripKeepsEverythingAPaletteHoldsExactly) {
    Palette palette("Ünïcode ☂ 😀");
    palette.colors = {Color::rgb(1.0 / 3, 0.1, 0.7, 0.25, "rgb", ColorType::normal),
                      Color::cmyk(0.1, 0.2, 0.3, 0.4, 0, "cmyk", ColorType::spot),
                      Color::lab(53.2408, -80.0925, 67.2032, 1, "", ColorType::global),
                      Color(ColorSpace::RGB, {1.5, -0.25, 0}, 1, "as given")};
    palette.groups = {Group("", {Color::gray(0.123456789, 0.9, "grey")}), Group("empty"), Group("Ω", {Color::rgb(0, 0, 0)})};

    expectExactPalette(dcpCoder->decode(dcpCoder->encode(palette)), palette);
    // The same from a forward-only stream.
    BytesParser::BytesReader stream(std::make_unique<std::istringstream>(dcpCoder->encode(palette)));
    expectExactPalette(dcpCoder->decode(stream), palette);
}

TEST(DCPCoder, Refusals) {
    const std::string red = "01 00 000000000000F03F 0000000000000000 0000000000000000 000000000000F03F 00000000";
    ASSERT_EQ(dcpCoder->decode(oneColor(red)).colors.size(), 1u);

    expectRefused(*dcpCoder,
                  {{"\x89" "DC", Case::invalidFormat},
                   {hexBytes("89444351 0100 00000000 00000000 00000000"), Case::invalidFormat},
                   {hexBytes("89444350 0200 00000000 00000000 00000000"), Case::invalidVersion},
                   {oneColor(red, "00000000 00"), Case::invalidFormat},  // a trailing byte
                   {oneColor(red, ""), Case::invalidEndOfFile},          // no group count
                   {hexBytes("89444350 0100 FFFFFFFF 41"), Case::invalidEndOfFile},
                   {hexBytes("89444350 0100 00000000 FFFFFF0F 00"), Case::invalidEndOfFile},
                   {hexBytes("89444350 0100 00000000 00000000 FFFFFF0F"), Case::invalidEndOfFile},
                   {hexBytes("89444350 0100 01000000 FF 00000000 00000000"), Case::invalidString},
                   {oneColor("04 00 0000000000000000 0000000000000000 00000000 00000000 00000000"), Case::unsupportedColorSpace},
                   {oneColor("01 03 0000000000000000 0000000000000000 00000000 00000000 00000000"), Case::unknownColorType},
                   // A component that is not a number, and an alpha of 2.
                   {oneColor("01 00 000000000000F87F 0000000000000000 0000000000000000 000000000000F03F 00000000"), Case::invalidFormat},
                   {oneColor("01 00 0000000000000000 0000000000000000 0000000000000000 0000000000000040 00000000"), Case::invalidFormat}});

    EXPECT_EQ(commonError([] { dcpCoder->encode(Palette("", {Color(ColorSpace::CMYK, {0, 0, 0})})); }),
              Case::invalidColorComponentCountForModelType);
    EXPECT_EQ(commonError([] { dcpCoder->encode(Palette("", {Color(ColorSpace::Gray, {std::nan("")})})); }), Case::invalidFormat);
    EXPECT_EQ(commonError([] { dcpCoder->encode(Palette("\xC0\x80")); }), Case::invalidString);
}
