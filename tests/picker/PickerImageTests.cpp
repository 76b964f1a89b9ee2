#include "PickerTestSupport.h"

#include "picker/LoupeRenderer.h"

using namespace kro;
using namespace kro::testing;

namespace {

using PickerImageTest = PickerFixture;

// How many capture failures the log holds.
int failures(LogCapture& log) {
    const auto text = log.text();
    int n = 0;
    for (size_t at = text.find("Screen capture failed: "); at != std::string::npos; at = text.find("Screen capture failed: ", at + 1)) ++n;
    return n;
}

}  // namespace

TEST(PickerImageGeometry, TheDecimationKeepsTheTopLeftDevicePixelOfEachPoint) {
    Bitmap capture{800, 800, std::vector<uint32_t>(800 * 800)};
    for (int y = 0; y < 800; ++y) {
        for (int x = 0; x < 800; ++x) capture.pixels[y * 800 + x] = 0xFF000000u | (x << 12) | y;
    }
    const auto twice = normalizedImage(capture, 2, 0, 0);
    ASSERT_EQ(twice.width, 400);
    EXPECT_EQ(twice.pixel(1, 3), 0xFF000000u | (2 << 12) | 6);
    EXPECT_EQ(twice.pixel(399, 399), 0xFF000000u | (798 << 12) | 798);

    EXPECT_EQ(normalizedImage(twice, 1, 0, 0).pixels, twice.pixels) << "on a 1x display every pixel is copied";
}

TEST_F(PickerImageTest, AtACornerThreeQuartersAreTransparentAndTheCentreIsThePixelUnderThePointer) {
    openAndReveal();
    pointAt(0, 0);
    const auto& image = *picker->pickerImage.pickerImage;
    EXPECT_EQ(image.pixel(199, 199) >> 24, 0u);
    EXPECT_EQ(image.pixel(200, 199) >> 24, 0u);
    EXPECT_EQ(image.pixel(199, 200) >> 24, 0u);
    EXPECT_EQ(image.pixel(200, 200), 0xFF000000u);
    EXPECT_EQ(image.pixel(210, 205), 0xFF0A0500u);
    size_t transparent = std::count_if(image.pixels.begin(), image.pixels.end(), [](uint32_t p) { return (p >> 24) == 0; });
    EXPECT_EQ(transparent, 400u * 400u - 200u * 200u);
    EXPECT_EQ(rgbOf(*picker->color), 0x000000u);

    pointAt(1279, 799);
    EXPECT_EQ(rgbOf(*picker->color), 0xFF1F00u);
}

TEST_F(PickerImageTest, EachDisplayGetsOneFilterThatLeavesTheLoupeOut) {
    screen.displays.push_back(ScreenInfo{2, {1280, 0, 1024, 768}, 2, ColorSpace::displayP3()});
    openAndReveal();
    pointAt(100, 100);
    pointAt(120, 100);
    EXPECT_EQ(screen.filtersMade, 1);
    EXPECT_EQ(screen.lastFilter.excludedWindow, 77u);
    pointAt(1500, 100);
    EXPECT_EQ(screen.filtersMade, 2);
    EXPECT_EQ(picker->pickerImage.captureFilters.size(), 2u);
    ASSERT_TRUE(picker->color);
    EXPECT_EQ(picker->color->colorSpace()->name(), ColorSpace::displayP3()->name())
        << "the pixel's numbers belong to the display's profile";
    EXPECT_EQ(rgbOf(*picker->color.value().converted(ColorSpace::displayP3())) >> 16, 1500u & 0xFF);

    picker->close(true);
    EXPECT_TRUE(picker->pickerImage.captureFilters.empty());
}

TEST_F(PickerImageTest, AChosenProfileConvertsTheSampleAndLeavesTheImage) {
    Preferences::shared().setColorSpaceProfile(ColorSpaceProfile::adobeRGB1998);
    screen.pixelAt = [](int, int) { return 0xFF20C040u; };
    openAndReveal();
    ASSERT_TRUE(picker->color);
    EXPECT_EQ(picker->color->colorSpace()->name(), ColorSpace::adobeRGB1998()->name());
    EXPECT_NE(rgbOf(*picker->color), 0x20C040u);
    EXPECT_EQ(picker->pickerImage.pickerImage->pixel(200, 200), 0xFF20C040u);
}

TEST_F(PickerImageTest, FailuresAreLoggedOncePerRunAndRetriedTwiceASecond) {
    LogCapture log;
    screen.failWith = "permission withdrawn";
    picker->open(PickerSource::standard, 0.05);
    for (int i = 0; i < 10; ++i) {
        advance(0.25);
        picker->pickerImage.drawPass();
    }
    const int attempts = screen.captures;
    EXPECT_GE(attempts, 4);
    EXPECT_LE(attempts, 6) << "at most two tries a second";

    screen.failWith.clear();
    advance(0.6);
    picker->pickerImage.drawPass();
    advance(0.1);
    EXPECT_TRUE(picker->color) << "a later success samples again";
    screen.failWith = "gone again";
    picker->pickerImage.drawPass();
    advance(0.1);
    EXPECT_EQ(failures(log), 2);
    EXPECT_TRUE(picker->isOpen);
}

TEST_F(PickerImageTest, AFilterThatCannotBeBuiltIsLogged) {
    LogCapture log;
    screen.filterFails = true;
    openAndReveal();
    EXPECT_EQ(failures(log), 1);
    EXPECT_FALSE(picker->color);
}

TEST_F(PickerImageTest, AResultThatArrivesAfterTheSessionEndedChangesNothing) {
    openAndReveal();
    const int captures = screen.captures;
    pointer.at = {10, 10};
    picker->pickerImage.drawPass();  // the next capture is posted, not yet run
    EXPECT_TRUE(picker->pickerImage.processing);
    picker->close(true);
    advance(1);
    EXPECT_EQ(screen.captures, captures);
    EXPECT_FALSE(picker->color);
    EXPECT_FALSE(picker->pickerImage.processing);
}

TEST(LoupeRenderer, TheCentreCellShowsThePixelUnderThePointerAndTheOvalClipsTheRest) {
    Bitmap image{400, 400, std::vector<uint32_t>(400 * 400, 0xFF0000FFu)};
    image.pixels[200 * 400 + 200] = 0xFFFF0000u;
    image.pixels[200 * 400 + 201] = 0xFF00FF00u;
    image.pixels[0] = 0x00000000u;
    Bitmap canvas;
    // At a HiDPI scale the canvas has the window's device pixels: a cell grows, and still shows one pixel.
    for (double scale : {1.0, 1.5, 2.0}) {
        for (int zoom : {4, 8, 20}) {
            renderLoupe({&image, 180, zoom, false, false, false, scale}, canvas);
            const int side = static_cast<int>(800 * scale);
            ASSERT_EQ(canvas.width, side);
            const int cellSide = static_cast<int>(zoom * scale);
            const int cell = (side - cellSide) / 2;
            EXPECT_LE(cell, side / 2) << "the middle device pixel, the pointer's, lies in the centre cell";
            EXPECT_GT(cell + cellSide, side / 2);
            const int middle = cell + cellSide / 2;
            const auto where = ::testing::Message() << "zoom " << zoom << " at " << scale;
            EXPECT_EQ(canvas.pixel(middle, middle), 0xFFFF0000u) << where;
            EXPECT_EQ(canvas.pixel(middle + cellSide, middle), 0xFF00FF00u) << where;
            EXPECT_EQ(canvas.pixel(middle - cellSide, middle), 0xFF0000FFu) << where;
        }
    }
    renderLoupe({&image, 180, 8, false, false, false}, canvas);
    EXPECT_EQ(canvas.pixel(400 - 95, 400 - 95), 0u) << "outside the oval";
    EXPECT_EQ(canvas.pixel(400, 400 - 80) >> 24, 0xFFu) << "inside the oval";

    renderLoupe({nullptr, 120, 8, true, false, false}, canvas);
    EXPECT_EQ(canvas.pixel(400, 400 - 50), 0xFFFFFFFFu) << "no image shows the text background";
    EXPECT_EQ(canvas.pixel(400 - 70, 400), 0u) << "a smaller lens clears what the larger one drew";
}
