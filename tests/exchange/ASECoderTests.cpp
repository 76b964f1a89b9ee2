#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/BytesWriter.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto aseCoder = makeASECoder();
using Case = CommonError::Case;

std::string ase(uint32_t blockCount, std::string_view blocksHex, std::string_view version = "0001 0000") {
    const std::string count = {char(blockCount >> 24), char(blockCount >> 16), char(blockCount >> 8), char(blockCount)};
    return "ASEF" + hexBytes(version) + count + hexBytes(blocksHex);
}
// An unnamed RGB colour block: blue, of the given type word.
std::string blueBlock(std::string_view typeWord = "0002") {
    return "0001 00000014 0000 52474220 00000000 00000000 3F800000 " + std::string(typeWord) + " ";
}
}  // namespace

TEST(ASECoder, WritesTheExactBytesOfAGroupedSwatch) {
    Palette palette;
    palette.groups.push_back(Group("Demo", {Color::rgb(1, 0, 0, 1, "Red", ColorType::normal)}));
    const std::string expected = hexBytes(
        "41 53 45 46 00 01 00 00 00 00 00 03 C0 01 00 00"
        "00 0C 00 05 00 44 00 65 00 6D 00 6F 00 00 00 01"
        "00 00 00 1C 00 04 00 52 00 65 00 64 00 00 52 47"
        "42 20 3F 80 00 00 00 00 00 00 00 00 00 00 00 02"
        "C0 02 00 00 00 00");
    EXPECT_EQ(hexOf(aseCoder->encode(palette)), hexOf(expected));

    const auto read = aseCoder->decode(expected);
    EXPECT_EQ(read.format, PaletteFormat::ase);
    ASSERT_EQ(read.groups.size(), 1u);
    EXPECT_EQ(read.groups[0].name, "Demo");
    EXPECT_EQ(read.groups[0].colors, palette.groups[0].colors);
}

TEST(ASECoder, RoundTripKeepsModelsTypesNamesAndGroupsButNotAlpha) {
    Palette palette;
    palette.colors = {Color::cmyk(1, 0.5, 0, 0.25, 1, "Cyan ☂", ColorType::global),
                      Color::lab(50, -20, 30.5, 1, "Lab", ColorType::spot),
                      Color::gray(0.5, 0.5, "", ColorType::normal)};
    palette.groups = {Group("", {Color::rgb(0, 0.25, 1, 1, "😀")}), Group("Second", {})};

    const auto read = aseCoder->decode(aseCoder->encode(palette));
    ASSERT_EQ(read.colors.size(), 3u);
    EXPECT_EQ(read.colors[0], palette.colors[0]);
    EXPECT_EQ(read.colors[1], palette.colors[1]) << "L goes through the file as L / 100";
    EXPECT_EQ(read.colors[2], palette.colors[2].withAlpha(1)) << "alpha has no field";
    ASSERT_EQ(read.groups.size(), 2u);
    EXPECT_EQ(read.groups[0].name, "");
    EXPECT_EQ(read.groups[0].colors, palette.groups[0].colors);
    EXPECT_EQ(read.groups[1].name, "Second");
    EXPECT_TRUE(read.groups[1].colors.empty());
}

TEST(ASECoder, EncodeRefusesWhatTheFileCannotHold) {
    Palette tooLong({}, {Color::rgb(0, 0, 0, 1, std::string(65535, 'x'))});
    EXPECT_EQ(commonError([&] { aseCoder->encode(tooLong); }), Case::invalidString);
    Palette wrongCount({}, {Color(ColorSpace::RGB, {0, 0})});
    EXPECT_EQ(commonError([&] { aseCoder->encode(wrongCount); }), Case::invalidColorComponentCountForModelType);
}

TEST(ASECoder, ReadsLenientShapes) {
    EXPECT_TRUE(aseCoder->decode(ase(0, "")).allColors().empty());

    // An unnamed colour; the stated block length is not what the body is parsed by.
    const auto unnamed = aseCoder->decode(ase(1, "0001 00000000 0000 52474220 00000000 00000000 3F800000 0001"));
    ASSERT_EQ(unnamed.colors.size(), 1u);
    EXPECT_EQ(unnamed.colors[0].name, "");
    EXPECT_EQ(unnamed.colors[0].colorType, ColorType::spot);
    expectComponents(unnamed.colors[0], ColorSpace::RGB, {0, 0, 1});

    // A group left open at the end of the file is kept.
    const auto open = aseCoder->decode(ase(2, "C001 0000000A 0004 0041 0042 0043 0000 " + blueBlock()));
    ASSERT_EQ(open.groups.size(), 1u);
    EXPECT_EQ(open.groups[0].name, "ABC");
    EXPECT_EQ(open.groups[0].colors.size(), 1u);

    LogCapture log;
    const auto future = aseCoder->decode(ase(1, blueBlock(), "0002 0001"));
    EXPECT_EQ(future.colors.size(), 1u);
    EXPECT_TRUE(log.contains("PAL.Coder.ASE: Untested ASE version 2.1 - attempting load...", LogLevel::error));
}

TEST(ASECoder, GroupStartInsideAnOpenGroup) {
    LogCapture log;
    // A named start stores the open group and opens the new one.
    const auto nested = aseCoder->decode(ase(4, "C001 00000006 0002 0041 0000 " + blueBlock() + "C001 00000006 0002 0042 0000 " + blueBlock()));
    ASSERT_EQ(nested.groups.size(), 2u);
    EXPECT_EQ(nested.groups[0].name, "A");
    EXPECT_EQ(nested.groups[1].name, "B");
    EXPECT_TRUE(log.contains("PAL.Coder.ASE: Opening a new group with a group already open - using existing group"));

    // A start with no body stores a copy of the open group and keeps filling the open one.
    const auto empty = aseCoder->decode(ase(5, "C001 00000006 0002 0041 0000 " + blueBlock() + "C001 00000000 " + blueBlock() + "C002 00000000"));
    ASSERT_EQ(empty.groups.size(), 2u);
    EXPECT_EQ(empty.groups[0].colors.size(), 1u);
    EXPECT_EQ(empty.groups[1].name, "A");
    EXPECT_EQ(empty.groups[1].colors.size(), 2u);
}

TEST(ASECoder, EveryRefusalHasItsErrorAndLogLine) {
    struct Refusal {
        std::string bytes;
        Case error;
        std::string logLine;
    };
    const std::vector<Refusal> refusals = {
        {"ASEX" + hexBytes("0001 0000 00000000"), Case::invalidASEHeader, "PAL.Coder.ASE: Invalid .ase header"},
        {ase(1, "0002 00000000"), Case::unknownBlockType, "PAL.Coder.ASE: Unknown ase block type"},
        {ase(1, "C002 00000000"), Case::groupNotOpen, "PAL.Coder.ASE: Attempting to close group without an open group"},
        {ase(1, "0001 00000000 0003 0041 0000"), Case::invalidString, "PAL.Coder.ASE: Invalid color name"},
        {ase(1, "0001 00000000 0000 58595A20"), Case::unknownColorMode, "PAL.Coder.ASE: Invalid .ase color model XYZ "},
        {ase(1, blueBlock("0003")), Case::unknownColorType, "PAL.Coder.ASE: Invalid color type 3"},
    };
    for (const auto& refusal : refusals) {
        LogCapture log;
        EXPECT_EQ(commonError([&] { aseCoder->decode(refusal.bytes); }), refusal.error) << refusal.logLine;
        EXPECT_TRUE(log.contains(refusal.logLine, LogLevel::error)) << refusal.logLine;
    }

    // The errors carry what was found.
    EXPECT_EQ(expectCommonError(Case::unknownColorMode, [] { aseCoder->decode(ase(1, "0001 00000000 0000 58595A20")); }).text(), "XYZ ");
    EXPECT_EQ(expectCommonError(Case::unknownColorType, [] { aseCoder->decode(ase(1, blueBlock("0007"))); }).integer(), 7);
    // A block count larger than the blocks present, and a truncated colour, end in the reader's error.
    EXPECT_EQ(readerError([&] { aseCoder->decode(ase(2, blueBlock())); }), BytesParser::ReaderError::endOfData);
    EXPECT_EQ(readerError([&] { aseCoder->decode(ase(1, "0001 00000014 0000 52474220 0000")); }), BytesParser::ReaderError::endOfData);
}

// Names are read unit by unit up to their terminator and must decode as UTF-16; a name that is not UTF-8
// cannot be written.
TEST(ASECoder, NamesMustBeTextOnBothSides) {
    EXPECT_EQ(readerError([&] { aseCoder->decode(ase(1, "0001 00000000 0002 D800 0000 52474220")); }),
              BytesParser::ReaderError::invalidStringEncoding);
    // Unterminated at the end of the file: read as far as it goes, then the stated length refuses it.
    EXPECT_EQ(commonError([&] { aseCoder->decode(ase(1, "0001 00000000 0004 0041 0042")); }), Case::invalidString);
    const auto surrogatePair = aseCoder->decode(ase(1, "0001 00000000 0003 D83D DE00 0000 52474220 00000000 00000000 3F800000 0000"));
    EXPECT_EQ(surrogatePair.colors.at(0).name, "😀");
    try {
        aseCoder->encode(Palette({}, {Color::rgb(0, 0, 0, 1, "Caf\xE9")}));
        ADD_FAILURE() << "a name that is not UTF-8 was written";
    } catch (const BytesParser::WriterError& error) {
        EXPECT_EQ(error.code, BytesParser::WriterError::cannotConvertStringEncoding);
    }
}
