#pragma once
// The magnifier's pixels: captures 400 by 400 points around the pointer (without the loupe's own window),
// reduces them to one pixel a point, and samples the pixel under the pointer in the chosen profile.
// Capture sustains itself: a finished capture asks for a redraw, and the drawing pass starts the next one.
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "formats/SmartItems.h"
#include "picker/PickerTypes.h"
#include "platform/Clock.h"
#include "platform/LoupeWindow.h"
#include "platform/ScreenCapture.h"
#include "platform/PointerControl.h"
#include "platform/Workspace.h"

namespace kro {

class PickerImageDelegate {
public:
    virtual ~PickerImageDelegate() = default;
    virtual void pickerImageDidSample(const ColorValue& color, const std::shared_ptr<SmartProfileItem>& profile) = 0;
};

struct PickerImageServices {
    ScreenCapture* screenCapture = nullptr;
    PointerControl* pointer = nullptr;
    LoupeWindow* window = nullptr;
    Workspace* workspace = nullptr;
};

class PickerImage {
public:
    static constexpr int kCaptureSide = 400;

    explicit PickerImage(PickerImageServices services);

    // Stores the completion, which runs after the next capture ends, and begins a capture.
    void startCapture(std::function<void()> completion);
    // Begins a capture unless one runs or the retry date has not come.
    void capture();
    // The session ended: results still under way are dropped.
    void stopCapture();
    void setOpen(bool open);
    // The capture rules of one drawing pass; the window's view calls it before it paints.
    void drawPass();

    int pickerSize = 180;
    int pickerZoom = 8;
    bool isOpen = false;
    PickerSource source = PickerSource::standard;
    std::optional<Bitmap> pickerImage;
    std::optional<ColorValue> pickerColor;
    bool inBackground = false;
    bool processing = false;
    std::shared_ptr<SmartProfileItem> smartProfileItem;
    std::map<uint32_t, CaptureFilter> captureFilters;
    bool captureFailed = false;
    TimePoint captureRetryDate = TimePoint::min();
    std::function<void()> captureCompletion;
    int captureGeneration = 0;
    PickerImageDelegate* pickerDelegate = nullptr;

private:
    void runCapture(int generation, ScreenInfo screen, ScreenRect rect, ScreenPoint mouse);
    std::optional<CaptureFilter> filter(const ScreenInfo& screen);
    void finish(int generation, std::optional<Bitmap> image, const ScreenInfo& screen, ScreenPoint mouse);
    void logCaptureFailure(const std::string& message);
    void sample(const ScreenInfo& screen, ScreenPoint mouse);

    PickerImageServices services_;
};

// The screen whose frame holds the point, if any.
std::optional<ScreenInfo> screenContaining(const std::vector<ScreenInfo>& screens, ScreenPoint point);

// The capture rectangle in the display's own coordinates: 400 by 400 with the pointer's pixel at its centre.
ScreenRect captureRect(const ScreenInfo& screen, ScreenPoint mouse);

// Places a capture of the on-screen part of the area (which starts `dx`, `dy` points into it) in a
// 400 by 400 image, one pixel a point: a plain decimation that keeps the top-left device pixel of each
// point. What lies off the display stays transparent.
Bitmap normalizedImage(const Bitmap& capture, int scale, int dx, int dy);

}  // namespace kro
