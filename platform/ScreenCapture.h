#pragma once
// Still images of a rectangle of one display, without the cursor and without one window of this process
// (the loupe never sees itself). Coordinates are global points with the origin at the top left of the
// desktop; a display's own rectangle is relative to its frame.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ColorValue.h"

namespace kro {

struct ScreenRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool contains(double px, double py) const { return px >= x && py >= y && px < x + width && py < y + height; }
    bool operator==(const ScreenRect&) const = default;
};

struct ScreenPoint {
    double x = 0;
    double y = 0;
};

// 32-bit pixels 0xAARRGGBB, straight (not premultiplied) alpha, rows top to bottom.
struct Bitmap {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> pixels;
    uint32_t pixel(int x, int y) const { return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)]; }
};

struct ScreenInfo {
    uint32_t displayID = 0;
    ScreenRect frame;
    // Device pixels per point.
    double backingScaleFactor = 1;
    // The display's own profile; null when it has none.
    std::shared_ptr<const ColorSpace> colorSpace;
    // Device pixels for one pixel of the interface (the desktop's HiDPI scale). The loupe's window is drawn
    // at this scale, while its lens still shows one cell per captured pixel.
    double interfaceScale = 1;
};

// What a capture of one display leaves out; built once per display and session.
struct CaptureFilter {
    uint32_t displayID = 0;
    uint64_t excludedWindow = 0;
};

class ScreenCapture {
public:
    virtual ~ScreenCapture() = default;
    virtual std::vector<ScreenInfo> screens() const = 0;
    // Nothing, with the reason in `error`, when the display or the window cannot be found.
    virtual std::optional<CaptureFilter> makeFilter(uint32_t displayID, uint64_t excludedWindow, std::string& error) = 0;
    // `sourceRect` in the display's points; the image is `width` by `height` device pixels. Nothing, with
    // the reason in `error`, when the capture failed.
    virtual std::optional<Bitmap> captureImage(const CaptureFilter& filter, const ScreenRect& sourceRect, int width,
                                               int height, std::string& error) = 0;
    // A picking session is about to show the loupe: what cannot be read from under it later is read now.
    virtual void beginSession() {}
    // The picking session ended: what was set up for its filters may go.
    virtual void endSession() {}
};

}  // namespace kro
