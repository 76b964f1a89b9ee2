#include <bit>

#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto afCoder = makeAffinityPaletteCoder();
using Case = CommonError::Case;

std::string floats(std::initializer_list<float> values) {
    std::string bytes;
    for (float value : values) bytes += le32(std::bit_cast<uint32_t>(value));
    return bytes;
}
std::string text(std::string_view utf8) { return le32(static_cast<uint32_t>(utf8.size())) + std::string(utf8); }

// The container as the converters write it around a body (sizes and time stamp are not read).
std::string container(const std::string& body, std::string_view kind = "htwS") {
    return hexBytes("00FF4B41 0B000000") + std::string(kind) + "#Inf" + std::string(32, '\0') + le32(0) + le32(0) + le32(2) +
           le32(2) + "Prot" + le32(3) + "#Fil" + hexBytes("00FF4B53") + body + hexBytes("00FFFFFFFF");
}
const std::string rgbaColor = "ABGR" + le32(1);
}  // namespace

TEST(AffinityPaletteCoder, FindsTheNameTheRGBAColoursAndTheirNames) {
    LogCapture log;
    const std::string body = "NClP" + text("Demo") + "LaVP" + rgbaColor + "Dloc_" + floats({1, 0, 0, 1}) + rgbaColor +
                             "Dloc_" + floats({0, 0.5f, 1, 0.25f}) + "KYMC" + le32(1) + "Dloc_" + floats({0, 1, 0, 0, 1}) +
                             "VNaP" + le32(2) + text("Red") + text("Sky ☁");
    const auto file = container(body);
    const auto read = afCoder->decode(file);
    EXPECT_EQ(read.format, PaletteFormat::afpalette);
    EXPECT_EQ(read.name, "Demo");
    ASSERT_EQ(read.colors.size(), 2u);
    EXPECT_EQ(read.colors[0], Color::rgb(1, 0, 0, 1, "Red"));
    EXPECT_EQ(read.colors[1], Color::rgb(0, 0.5, 1, 0.25, "Sky ☁"));

    const size_t cmykAt = file.rfind("Dloc_");
    EXPECT_TRUE(log.contains("afpalette: unsupported color type 'CMYK' at index 2, curpos " + std::to_string(cmykAt), LogLevel::error));
}

TEST(AffinityPaletteCoder, TakesOnlyWhatItCanPlace) {
    // A type byte after the name tag; a chance "colD" followed by numbers that are no colour; names that
    // do not match the colours in number are left off.
    const std::string body = "NClP" + std::string(1, '\x05') + text("Typed") + "Dloc_" + floats({2, -1, 0, 1}) + rgbaColor +
                             "Dloc_" + floats({0.5f, 0.5f, 0.5f, 1}) + "VNaP" + le32(2) + text("a") + text("b");
    const auto read = afCoder->decode(container(body));
    EXPECT_EQ(read.name, "Typed");
    ASSERT_EQ(read.colors.size(), 1u);
    EXPECT_EQ(read.colors[0], Color::rgb(0.5, 0.5, 0.5));

    EXPECT_TRUE(afCoder->decode(container("Dloc_" + floats({1, 1}))).colors.empty()) << "a record cut by the end";
}

TEST(AffinityPaletteCoder, Refusals) {
    // A cut container and a preset file.
    expectRefused(*afCoder, {{hexBytes("00FF4B41 0B00"), Case::invalidFormat}, {container("", "nsrP"), Case::invalidFormat}});
}
