#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto cplCoder = makeCorelPaletteCoder();
using Case = CommonError::Case;

// A name as the UTF-16 variants store it: a character count, then the units.
std::string wide(std::string_view ascii) {
    std::string bytes(1, char(ascii.size()));
    for (char c : ascii) bytes += {c, '\0'};
    return bytes;
}
std::string narrow(std::string_view latin1) { return char(latin1.size()) + std::string(latin1); }
// The 12-byte colour value: model, library id 0, reserved, four component bytes.
std::string value(unsigned model, std::string_view componentsHex) { return le16(model) + le16(0) + le32(0) + hexBytes(componentsHex); }
std::string shortRecord(unsigned model, std::string_view componentsHex, const std::string& name) {
    return value(model, componentsHex) + name;
}
// A table-header palette: name, type and count fields, then the records.
std::string table(std::string_view magicHex, const std::string& name, unsigned type, unsigned count, const std::string& records) {
    const uint32_t nameAt = 30, typeAt = nameAt + static_cast<uint32_t>(name.size()), countAt = typeAt + 2;
    return hexBytes(magicHex) + le32(3) + le32(0) + le32(nameAt) + le32(1) + le32(typeAt) + le32(2) + le32(countAt) + name +
           le16(type) + le16(count) + records;
}
}  // namespace

TEST(CorelPaletteCoder, ReadsTheBytesCorelDRAW12Writes) {
    const std::string demo = hexBytes(
        "DD DC 03 00 00 00 00 00 00 00 1E 00 00 00 01 00"
        "00 00 27 00 00 00 02 00 00 00 29 00 00 00 04 44"
        "00 65 00 6D 00 6F 00 05 00 02 00 05 00 00 00 00"
        "00 00 00 00 00 FF 00 03 52 00 65 00 64 00 02 00"
        "00 00 00 00 00 00 64 00 00 00 04 43 00 79 00 61"
        "00 6E 00");
    EXPECT_EQ(table("DDDC", wide("Demo"), 5, 2,
                    shortRecord(5, "0000FF00", wide("Red")) + shortRecord(2, "64000000", wide("Cyan"))),
              demo);
    const auto read = cplCoder->decode(demo);
    EXPECT_EQ(read.format, PaletteFormat::corelPalette);
    EXPECT_EQ(read.name, "Demo");
    EXPECT_EQ(read.colors, (std::vector<Color>{Color::rgb(1, 0, 0, 1, "Red"), Color::cmyk(1, 0, 0, 0, 1, "Cyan")}));
}

TEST(CorelPaletteCoder, ReadsEveryModelThatCarriesAColour) {
    const std::string records = shortRecord(2, "0A141E28", wide("cmyk100")) + shortRecord(3, "FF000033", wide("cmyk255")) +
                                shortRecord(17, "00FF0000", wide("cmyk17")) + shortRecord(4, "FF800000", wide("cmy")) +
                                shortRecord(5, "332211FF", wide("bgr")) + shortRecord(6, "7800FFFF", wide("hsb")) +
                                shortRecord(7, "F0007FFF", wide("hls")) + shortRecord(8, "01000000", wide("black")) +
                                shortRecord(8, "00000000", wide("white")) + shortRecord(9, "33000000", wide("grey")) +
                                shortRecord(12, "FFEC1400", wide("lab12")) + shortRecord(18, "0064FF00", wide("lab18")) +
                                shortRecord(20, "32000000", wide("registration"));
    const auto read = cplCoder->decode(table("DDDC", wide(""), 5, 13, records));
    ASSERT_EQ(read.colors.size(), 13u);
    const auto& c = read.colors;
    expectComponents(c[0], ColorSpace::CMYK, {0.10, 0.20, 0.30, 0.40});
    expectComponents(c[1], ColorSpace::CMYK, {1, 0, 0, 0.2});
    expectComponents(c[2], ColorSpace::CMYK, {0, 1, 0, 0});
    expectComponents(c[3], ColorSpace::CMYK, {1, 128 / 255.0, 0, 0});
    expectComponents(c[4], ColorSpace::RGB, {0x11 / 255.0, 0x22 / 255.0, 0x33 / 255.0});
    expectComponents(c[5], ColorSpace::RGB, {0, 1, 0}, 1e-9);          // hue 120, full saturation and brightness
    expectComponents(c[6], ColorSpace::RGB, {0, 0, 1}, 0.01);          // hue 240, lightness 127/255, saturation 1
    expectComponents(c[7], ColorSpace::Gray, {0});
    expectComponents(c[8], ColorSpace::Gray, {1});
    expectComponents(c[9], ColorSpace::Gray, {0.2});
    expectComponents(c[10], ColorSpace::LAB, {100, -20, 20});          // a and b signed bytes
    expectComponents(c[11], ColorSpace::LAB, {0, -28, 127});           // a and b offset by 128
    expectComponents(c[12], ColorSpace::CMYK, {0.5, 0.5, 0.5, 0.5});
    EXPECT_EQ(c[12].name, "registration");
    for (const auto& color : c) EXPECT_EQ(color.colorType, ColorType::global);
}

TEST(CorelPaletteCoder, ReadsEightBitVariantsAndLogsModelsWithoutAColour) {
    LogCapture log;
    // CorelDRAW 5: count header, Latin-1 names; a Pantone book reference has no colour of its own.
    const auto old = cplCoder->decode(hexBytes("CCDC") + le16(3) + shortRecord(9, "80000000", narrow("Gr\xFC")) +
                                      shortRecord(1, "2C016400", narrow("P 300")) + shortRecord(18, "FF800000", narrow("")));
    ASSERT_EQ(old.colors.size(), 2u);
    EXPECT_EQ(old.colors[0].name, "Grü");
    expectComponents(old.colors[1], ColorSpace::LAB, {100, 0, -128});
    EXPECT_TRUE(log.contains("CPL: Unsupported color type 1, attempting to recover...", LogLevel::error));

    // CorelDRAW 8: the palette name right after the magic.
    const auto named = cplCoder->decode(hexBytes("DCDC") + narrow("Mine") + le16(1) + shortRecord(5, "00FF0000", narrow("g")));
    EXPECT_EQ(named.name, "Mine");
    EXPECT_EQ(named.colors.at(0), Color::rgb(0, 1, 0, 1, "g"));
}

TEST(CorelPaletteCoder, SpotLibrariesUseLongRecordsAndTheirAlternateValues) {
    LogCapture log;
    const auto longRecord = [](std::string primary, std::string alternate, std::string_view name) {
        return le32(1234) + primary + alternate + wide(name) + le32(1) + le32(2) + le32(0);
    };
    const std::string records = longRecord(value(1, "2C016400"), value(2, "00646400"), "PANTONE 185 C") +
                                longRecord(value(25, "00000000"), value(21, "00000000"), "lost") +
                                longRecord(value(5, "00000000"), value(5, "00000000"), "NONASSIGNED 1");
    const auto read = cplCoder->decode(table("CDDD", wide("Spot"), 8, 3, records));
    ASSERT_EQ(read.colors.size(), 1u);
    EXPECT_EQ(read.colors[0], Color::cmyk(0, 1, 1, 0, 1, "PANTONE 185 C", ColorType::spot));
    EXPECT_TRUE(log.contains("CPL: Unsupported color type 25, attempting to recover..."));
    EXPECT_TRUE(log.contains("CPL: Unsupported color type 21 (2), attempting to recover..."));
    EXPECT_FALSE(log.contains("CPL: Unsupported color type 2 (2), attempting to recover..."));

    // The type calls for long records, but the records are short: the parse that ends at the end wins.
    const auto custom = cplCoder->decode(table("CDDC", narrow("x"), 8, 1, shortRecord(2, "00000064", narrow("K"))));
    ASSERT_EQ(custom.colors.size(), 1u);
    EXPECT_EQ(custom.colors[0], Color::cmyk(0, 0, 0, 1, 1, "K"));
}

TEST(CorelPaletteCoder, Refusals) {
    const auto one = shortRecord(5, "00000000", wide("n"));
    expectRefused(*cplCoder, {{hexBytes("DD"), Case::invalidFormat},
                              {hexBytes("DDDD 0100"), Case::invalidFormat},
                              {hexBytes("DDDC 00000000"), Case::invalidFormat},  // no table
                              {hexBytes("DDDC 11000000"), Case::invalidFormat},  // a table too long
                              // A field offset beyond the file, and a table without the count field.
                              {hexBytes("DDDC 01000000 02000000 FF000000 0000"), Case::invalidFormat},
                              {hexBytes("DDDC 01000000 01000000 0E000000 0500"), Case::invalidFormat},
                              // More records than the bytes hold, a cut record, and a cut spot library.
                              {table("DDDC", wide(""), 5, 0xFFFF, one), Case::invalidEndOfFile},
                              {table("DDDC", wide(""), 5, 1, one.substr(0, 14)), Case::invalidEndOfFile},
                              {table("CDDD", wide(""), 8, 2, one), Case::invalidEndOfFile},
                              {hexBytes("CCDC") + le16(1) + one.substr(0, 12), Case::invalidEndOfFile}});
}
