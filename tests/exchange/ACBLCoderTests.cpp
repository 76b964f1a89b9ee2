#include "BinaryCoderTestSupport.h"

using namespace PAL;
using namespace binarytest;

namespace {
const auto acblCoder = makeACBLCoder();
using Case = CommonError::Case;

std::string swatchbook(std::string_view format, std::string_view swatches, std::string_view root = "Version=\"1\"") {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<AdobeSwatchbook " + std::string(root) + ">" + std::string(format) +
           "<Swatches>" + std::string(swatches) + "</Swatches></AdobeSwatchbook>";
}
}  // namespace

TEST(ACBLCoder, ReadsSwatchesInTheFormatsSpace) {
    const auto read = acblCoder->decode(swatchbook(R"(<Format Channels="4" ColorSpace="CMYK"/>)",
                                                   "<Sp><C>0 0.5 1 0</C></Sp>"
                                                   "<Sp><C>0.25  x 1.5 0 -1</C></Sp>"  // junk dropped, values clamped
                                                   "<Sp><C>1 1 1</C><C>0.1 0.2 0.3 0.4</C></Sp>"));
    EXPECT_EQ(read.format, PaletteFormat::acbl);
    ASSERT_EQ(read.colors.size(), 3u);
    expectComponents(read.colors[0], ColorSpace::CMYK, {0, 0.5, 1, 0});
    expectComponents(read.colors[1], ColorSpace::CMYK, {0.25, 1, 0, 0});
    // A list of the wrong length is ignored; a later one of the right length wins.
    expectComponents(read.colors[2], ColorSpace::CMYK, {0.1, 0.2, 0.3, 0.4});
    for (const auto& color : read.colors) {
        EXPECT_EQ(color.name, "");
        EXPECT_EQ(color.alpha, 1);
    }
    EXPECT_TRUE(acblCoder->decode(swatchbook("", "<Sp><C>1 0 0</C></Sp>")).colors.empty()) << "no Format, no colors";
}

TEST(ACBLCoder, RefusesWhatIsNotABook) {
    const std::vector<std::pair<std::string, Case>> refusals = {
        {swatchbook(R"(<Format Channels="3" ColorSpace="RGB"/>)", "", "Version=\"one\""), Case::invalidFormat},
        {swatchbook(R"(<Format Channels="3" ColorSpace="RGB"/>)", "", ""), Case::invalidFormat},
        {swatchbook(R"(<Format Channels="3" ColorSpace="HSV"/>)", ""), Case::invalidFormat},
        {swatchbook(R"(<Format ColorSpace="RGB"/>)", ""), Case::invalidFormat},
        {swatchbook(R"(<Format Channels="3" ColorSpace="RGB"/>)", "<Sp><C>1 0", ""), Case::invalidFormat},
        {swatchbook(R"(<Format Channels="3" ColorSpace="RGB"/>)", "<Sp></Sp>"), Case::invalidColorComponentCountForModelType},
        {swatchbook(R"(<Format Channels="4" ColorSpace="RGB"/>)", "<Sp><C>1 0 0 0</C></Sp>"),
         Case::invalidColorComponentCountForModelType},
    };
    for (const auto& [document, error] : refusals) EXPECT_EQ(commonError([&] { acblCoder->decode(document); }), error) << document;
    EXPECT_EQ(commonError([&] { acblCoder->encode(Palette()); }), Case::notImplemented);
}
