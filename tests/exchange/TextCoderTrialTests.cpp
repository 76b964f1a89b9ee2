// The trial of coders for extensions that several formats share: each file must land with the coder of
// its own format, whatever coders come before it.
#include <gtest/gtest.h>

#include <optional>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using namespace std::string_literals;

namespace {

// The format of the coder that took the file, or nothing when none did.
std::optional<PaletteFormat> winner(std::string_view data, std::string_view extension) {
    try {
        return decode(data, extension).format;
    } catch (const CommonError&) {
        return std::nullopt;
    }
}

}  // namespace

TEST(TextCoderTrialTest, PalFilesReachTheirOwnCoder) {
    EXPECT_EQ(winner("JASC-PAL\r\n0100\r\n1\r\n23 42 58\r\n", "pal"), PaletteFormat::paintShopPro);
    // A RIFF palette of one colour, written by hand.
    EXPECT_EQ(winner("RIFF\x14\0\0\0PAL data\x08\0\0\0\0\x03\x01\0\x17\x2A\x3A\0"s, "pal"), PaletteFormat::riff);
    EXPECT_EQ(winner("\"Deep Water\"                   60  28   0  77\r\n\x1A"s, "PAL"), PaletteFormat::corelDrawV3);
    // Binary VGA palettes: one that starts with a quote, one with every byte printable, and one that
    // starts with the first bytes of a JASC header.
    EXPECT_EQ(winner("\"\x10\x20\x30\x40\x50"s, "pal"), PaletteFormat::vga24bit);
    EXPECT_EQ(winner("\"AB\"CD", "pal"), PaletteFormat::vga24bit);
    EXPECT_EQ(winner("JASC-PA", "pal"), std::nullopt);
    EXPECT_EQ(winner("JASC-PAL\r", "pal"), PaletteFormat::vga24bit);
}

TEST(TextCoderTrialTest, TxtFilesReachTheirOwnCoder) {
    EXPECT_EQ(winner("ROWS 1\r\nCOLS 1\r\nR: 023, G:042, B:058 HV:0.00, SV:0.00, VV:0.00 Deep Water\r\n", "txt"),
              PaletteFormat::corelPainter);
    EXPECT_EQ(winner("\xEF\xBB\xBF; paint.net Palette File\r\nFF172A3A\r\n", "txt"), PaletteFormat::paintNET);
    EXPECT_EQ(winner("FF172A3A\nFF40708A\n", "txt"), PaletteFormat::paintNET);
    // Plain lists belong to the RGB and RGBA text coders that come after these two.
    for (const char* list : {"255 0 0\n0 255 0\n", "255 0 0 128 Half red\n", "0.5 0.25 1\n", "#172a3a\n#40708a", "172a3a\n40708a\n",
                             "255, 0, 0\n", "255;0;0\n"}) {
        const auto format = winner(list, "txt");
        EXPECT_NE(format, PaletteFormat::corelPainter) << list;
        EXPECT_NE(format, PaletteFormat::paintNET) << list;
    }
}
