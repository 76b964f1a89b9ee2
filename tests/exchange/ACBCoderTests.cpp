#include "BinaryCoderTestSupport.h"

#include "exchange/BytesWriter.h"

using namespace PAL;
using namespace binarytest;
using BytesParser::Endianness;

namespace {
const auto acbCoder = makeACBCoder();
using Case = CommonError::Case;

std::string pascal(std::string_view text) {
    std::vector<uint8_t> units;
    BytesParser::encodeText(text, BytesParser::TextEncoding::utf16BigEndian, units);
    BytesParser::BytesWriter out;
    out.writeInteger<uint32_t>(static_cast<uint32_t>(units.size() / 2), Endianness::big);
    out.writeBytes(units);
    return out.data();
}

struct Record {
    std::string name, code, componentsHex;
};

std::string book(std::string_view title, uint16_t space, const std::vector<Record>& records, std::string_view trailer = "spflspot",
                 std::string_view versionHex = "0001") {
    std::string bytes = "8BCB" + hexBytes(versionHex) + hexBytes("0BB8") + pascal(title) + pascal("$$$/colorbook/T/prefix=P ") +
                        pascal("") + pascal("A description");
    bytes += hexBytes("00") + char(records.size()) + hexBytes("0007 0000 00") + char(space);
    for (const auto& record : records) bytes += pascal(record.name) + record.code + hexBytes(record.componentsHex);
    return bytes + std::string(trailer);
}
}  // namespace

TEST(ACBCoder, ReadsABookAndDropsItsFillers) {
    LogCapture log;
    const auto read = acbCoder->decode(book("$$$/colorbook/Test/title=Test Book", 2,
                                            {{"Cyan", "CY0001", "00 FF FF FF"},
                                             {"", "      ", "FF FF FF FF"},
                                             {"$$$/acb/Test/Yellow=Yellow", "YELLOC", "FF FF 00 FF"}}));
    EXPECT_EQ(read.format, PaletteFormat::acb);
    EXPECT_EQ(read.name, "Test Book");
    ASSERT_EQ(read.colors.size(), 2u) << "fewer colors than the header's count";
    EXPECT_EQ(read.colors[0].name, "Cyan");
    expectComponents(read.colors[0], ColorSpace::CMYK, {1, 0, 0, 0});
    EXPECT_EQ(read.colors[1].name, "Yellow");
    expectComponents(read.colors[1], ColorSpace::CMYK, {0, 0, 1, 0});
    EXPECT_TRUE(log.contains("PAL.Coder.ACB: Expecting 3 colors", LogLevel::info));
}

TEST(ACBCoder, DecodesEachSpaceAndOlderBooksWithoutTrailer) {
    const auto lab = acbCoder->decode(book("$$$/Foo/Bar=Pantone", 7, {{"L", "   01K", "FF 80 00"}}, ""));
    EXPECT_EQ(lab.name, "Pantone");
    expectComponents(lab.colors.at(0), ColorSpace::LAB, {100, 0, -128});
    const auto rgb = acbCoder->decode(book("Plain title", 0, {{"R", "R00001", "FF 33 00"}}, "spflproc"));
    EXPECT_EQ(rgb.name, "Plain title");
    expectComponents(rgb.colors.at(0), ColorSpace::RGB, {1, 0.2, 0});
    const auto gray = acbCoder->decode(book("G", 8, {{"", "G00001", "33"}}));
    expectComponents(gray.colors.at(0), ColorSpace::Gray, {0.2});
    EXPECT_EQ(gray.colors.at(0).name, "") << "a code alone makes it a color";
    for (const auto& palette : {lab, rgb, gray}) EXPECT_EQ(palette.colors.at(0).alpha, 1);
}

TEST(ACBCoder, RefusalsAndLogs) {
    LogCapture log;
    EXPECT_EQ(commonError([&] { acbCoder->decode("8BCX" + book("T", 0, {}).substr(4)); }), Case::invalidBOM);
    EXPECT_TRUE(log.contains("PAL.Coder.ACB: Invalid palette file", LogLevel::error));
    EXPECT_EQ(commonError([&] { acbCoder->decode(book("T", 5, {})); }), Case::unsupportedColorSpace);
    EXPECT_TRUE(log.contains("PAL.Coder.ACB: Colorspace 5 not supported", LogLevel::error));
    EXPECT_EQ(readerError([&] { acbCoder->decode(book("T", 0, {{"R", "R00001", "FF 33"}}, "")); }), BytesParser::ReaderError::endOfData);

    EXPECT_EQ(acbCoder->decode(book("T", 0, {{"R", "R00001", "FF 33 00"}}, "", "0002")).colors.size(), 1u);
    EXPECT_TRUE(log.contains("PAL.Coder.ACB: Found untested version 2... decoder may not work", LogLevel::info));
}
