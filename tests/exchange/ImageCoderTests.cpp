#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>
#include <filesystem>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"
#include "exchange/coders/ImageCoder.h"
#include "exchange/coders/RasterImage.h"

using namespace PAL;
using binarytest::be32;
using Case = CommonError::Case;

namespace {

std::vector<std::string> hexes(const std::vector<Color>& colors) {
    std::vector<std::string> out;
    for (const auto& color : colors) out.push_back(color.hexString(ColorByteFormat::rgba));
    return out;
}

// A picture filled row by row: `rows` lists (colour, number of rows) from the top.
RasterImage stripes(int width, const std::vector<std::pair<std::array<std::uint8_t, 4>, int>>& rows) {
    RasterImage image;
    image.width = width;
    for (const auto& [rgba, count] : rows) {
        image.height += count;
        for (int i = 0; i < width * count; ++i) image.rgba.insert(image.rgba.end(), rgba.begin(), rgba.end());
    }
    return image;
}

std::string pngChunk(std::string_view type, std::string_view data) {
    const std::string body = std::string(type) + std::string(data);
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
    return be32(static_cast<std::uint32_t>(data.size())) + body + be32(static_cast<std::uint32_t>(crc));
}

// An 8-bit RGBA PNG of the declared size whose image data inflates to `inflated`.
std::string handMadePNG(std::uint32_t width, std::uint32_t height, const std::string& inflated) {
    uLongf size = compressBound(static_cast<uLong>(inflated.size()));
    std::string deflated(size, '\0');
    compress2(reinterpret_cast<Bytef*>(deflated.data()), &size, reinterpret_cast<const Bytef*>(inflated.data()),
              static_cast<uLong>(inflated.size()), 9);
    deflated.resize(size);
    return "\x89PNG\r\n\x1a\n" + pngChunk("IHDR", be32(width) + be32(height) + std::string("\x08\x06\x00\x00\x00", 5)) +
           pngChunk("IDAT", deflated) + pngChunk("IEND", "");
}

// A 2 x 2 GIF of red, blue / blue, red. Its LZW data sends a clear code after every two pixels so that
// the codes stay three bits wide: clear 0 1 clear 1 0 end.
std::string handMadeGIF(bool blueIsTransparent) {
    std::string gif("GIF89a\x02\x00\x02\x00\x80\x00\x00" "\xFF\x00\x00" "\x00\x00\xFF", 19);
    if (blueIsTransparent) gif += std::string("\x21\xF9\x04\x01\x00\x00\x01\x00", 8);
    gif += std::string("\x2C\x00\x00\x00\x00\x02\x00\x02\x00\x00" "\x02\x03\x44\x18\x14\x00" "\x3B", 17);
    return gif;
}

}  // namespace

TEST(ImageCoder, SwatchPNGReadsBackToItsColoursInOrder) {
    std::vector<Color> ramp;
    for (int i = 0; i < 20; ++i) ramp.push_back(Color::rgb255(i * 12, 255 - i * 12, 90, 255, "Ramp " + std::to_string(i)));
    const Palette palette("Sheet", {Color::rgb255(250, 250, 250), Color::rgb255(0, 0, 0, 128), Color::cmyk(1, 0, 0, 0)},
                          {Group("Warm", {Color::rgb255(200, 30, 20), Color::rgb255(250, 160, 0)}), Group("Empty"), Group("Ramp", ramp)});
    ImageCoder coder;
    const std::string png = coder.encode(palette);

    // Sixteen columns; the globals, the warm group and the ramp's two rows each start a row.
    const RasterImage image = readRasterImage(png);
    EXPECT_EQ(image.width, 16 * 32);
    EXPECT_EQ(image.height, 4 * 32);
    EXPECT_EQ(image.rgba[(32 * image.width + 2 * 32) * 4 + 3], 0) << "the rest of a short row is transparent";

    const Palette back = decode(png, "png");
    EXPECT_TRUE(back.groups.empty());
    std::vector<Color> expected = palette.allColors();
    expected[2] = Color::hex(expected[2].hexString());  // CMYK is drawn as its sRGB value
    EXPECT_EQ(hexes(back.colors), hexes(expected));
    EXPECT_NEAR(back.colors[1].alpha, 128.0 / 255, 1e-9);
}

TEST(ImageCoder, ImageExportTypeSharesOneSizeAmongEqualSwatches) {
    const Palette palette("Three", {Color::rgb255(255, 0, 0), Color::rgb255(0, 255, 0), Color::rgb255(0, 0, 255)});
    ImageCoder coder;
    coder.exportType = ImageCoder::ExportType::image({100, 50});
    const RasterImage image = readRasterImage(coder.encode(palette));
    ASSERT_EQ(image.width, 100);
    ASSERT_EQ(image.height, 50);
    EXPECT_EQ(image.rgba[98 * 4 + 3], 255);
    EXPECT_EQ(image.rgba[99 * 4 + 3], 0) << "the remainder of 100 / 3 stays transparent";
    EXPECT_EQ(hexes(coder.decode(coder.encode(palette)).colors), hexes(palette.colors));

    // Narrower than a pixel per swatch, no size, too large a picture, nothing to draw.
    for (const auto& [type, drawn] : {std::pair{ImageCoder::ExportType::image({2, 50}), palette},
                                      {ImageCoder::ExportType::swatch({NAN, 10}), palette},
                                      {ImageCoder::ExportType::swatch({10000, 10000}), palette},
                                      {ImageCoder::ExportType::swatch({10, 10}), Palette("Nothing", {}, {Group("Empty")})}}) {
        coder.exportType = type;
        expectCommonError(Case::cannotCreateImage, [&] { coder.encode(drawn); });
    }
}

TEST(ImageCoder, JPEGSwatchesReadBackWithinATolerance) {
    const Palette palette("Eight", {Color::rgb255(230, 57, 70), Color::rgb255(241, 250, 238), Color::rgb255(168, 218, 220),
                                    Color::rgb255(69, 123, 157), Color::rgb255(29, 53, 87), Color::rgb255(255, 183, 3),
                                    Color::rgb255(33, 158, 188), Color::rgb255(0, 0, 255, 127.5)});
    ImageCoder coder;
    coder.exportImageType = ImageCoder::ExportImageType::jpeg;
    const std::string jpeg = coder.encode(palette);
    ASSERT_TRUE(jpeg.starts_with("\xFF\xD8\xFF"));

    std::vector<Color> expected = palette.colors;
    expected.back() = Color::rgb255(128, 128, 255);  // JPEG has no alpha: laid over white
    const Palette back = decode(jpeg, "jpg");
    ASSERT_EQ(back.colors.size(), expected.size());
    for (const auto& want : expected) {
        const RGB w = want.rgb();
        const bool found = std::any_of(back.colors.begin(), back.colors.end(), [&](const Color& color) {
            const RGB c = color.rgb();
            return std::abs(c.rf - w.rf) <= 4.0 / 255 && std::abs(c.gf - w.gf) <= 4.0 / 255 && std::abs(c.bf - w.bf) <= 4.0 / 255 && c.af == 1;
        });
        EXPECT_TRUE(found) << want.hexString() << " among " << testing::PrintToString(hexes(back.colors));
    }
}

TEST(ImageCoder, AccuracyDecidesWhichShadesCountAsOne) {
    // 60 rows dithered from two reds 4.5 levels apart, 30 rows of flat blue, 9 of a flat blue 10 levels
    // away, and a last row of transparency with one green pixel: too small a part of the picture to be
    // a colour of it.
    RasterImage image = stripes(100, {{{200, 40, 40, 255}, 60}, {{0, 0, 255, 255}, 30}, {{0, 0, 245, 255}, 9}, {{0, 0, 0, 0}, 1}});
    for (std::size_t pixel = 1; pixel < 6000; pixel += 2) std::copy_n(std::array<std::uint8_t, 3>{204, 42, 40}.begin(), 3, image.rgba.begin() + pixel * 4);
    std::copy_n(std::array<std::uint8_t, 4>{0, 255, 0, 255}.begin(), 4, image.rgba.end() - 4);
    const std::string png = pngBytes(image);
    const auto sampled = [&](double accuracy, std::size_t maximum = 256) {
        ImageCoder coder;
        coder.accuracy = accuracy;
        coder.maximumColorCount = maximum;
        return hexes(coder.decode(png).colors);
    };
    using Hexes = std::vector<std::string>;
    EXPECT_EQ(sampled(1), (Hexes{"c82828ff", "cc2a28ff", "0000ffff", "0000f5ff"})) << "equal areas in the order they appear";
    EXPECT_EQ(sampled(0.99), (Hexes{"c82828ff", "0000ffff", "0000f5ff"})) << "the reds are one color; flat blues stay apart";
    EXPECT_EQ(sampled(0.99, 1), (Hexes{"c82828ff"}));
    EXPECT_EQ(sampled(0), (Hexes{"0000f5ff", "0000ffff"})) << "every shade joins the nearest flat color";
    EXPECT_EQ(sampled(NAN), sampled(1));
}

TEST(ImageCoder, ReadsAGIFsColoursAndSkipsItsTransparentOnes) {
    const auto gif = handMadeGIF(false);
    EXPECT_EQ(hexes(decode(gif, "gif").colors), (std::vector<std::string>{"ff0000ff", "0000ffff"}));
    EXPECT_EQ(hexes(decode(handMadeGIF(true), "gif").colors), (std::vector<std::string>{"ff0000ff"}));
}

TEST(ImageCoder, RefusesWhatItCannotSafelyRead) {
    const ImageCoder coder;
    const std::string onePixel = handMadePNG(1, 1, std::string("\x00\x10\x20\x30\xFF", 5));
    EXPECT_EQ(hexes(coder.decode(onePixel).colors), (std::vector<std::string>{"102030ff"})) << "the hand-made PNG itself is sound";

    for (const std::string& bytes : {std::string(), onePixel.substr(0, 40)})
        expectCommonError(Case::invalidFormat, [&] { coder.decode(bytes); });
    // A declared size past the limit is refused from the header, before anything is inflated.
    expectCommonError(Case::invalidFormat, [&] { coder.decode(handMadePNG(7000, 7000, std::string(16, '\0'))); });
    // A decompression bomb behind a small declared size: 64 MB of image data for one pixel.
    expectCommonError(Case::invalidFormat, [&] { coder.decode(handMadePNG(1, 1, std::string(64 << 20, '\0'))); });

    // Found by the fuzz target: Huffman tables that sent stb's JPEG decoder past their end. Whatever
    // the reader makes of it, it must neither crash nor throw anything but a refusal.
    try {
        coder.decode(readFile(std::filesystem::path(KRO_EXCHANGE_TEST_DATA) / "damaged-huffman-tables.jpg"));
    } catch (const CommonError&) {
    }
}

TEST(ImageCoderRealFiles, SamplesAPhotograph) {
    // GIMP's splash: moss and mushrooms in a dark forest, with the title in white.
    const std::string photograph = realFile("gimp-data/gimp-splash.png");
    ImageCoder coder;
    const Palette palette = coder.decode(photograph);
    EXPECT_GE(palette.colors.size(), 20u);
    EXPECT_LE(palette.colors.size(), coder.maximumColorCount);
    EXPECT_LT(palette.colors.front().relativeLuminance(), 0.05) << "the dark forest covers most of it";
    EXPECT_TRUE(std::any_of(palette.colors.begin(), palette.colors.end(), [](const Color& c) { return c.relativeLuminance() > 0.9; }))
        << "the white title is a color of its own";
    EXPECT_TRUE(std::all_of(palette.colors.begin(), palette.colors.end(), [](const Color& c) { return c.alpha == 1; }));
    coder.accuracy = 0.8;
    EXPECT_LT(coder.decode(photograph).colors.size(), palette.colors.size() / 2) << "a lower accuracy merges more";
}
