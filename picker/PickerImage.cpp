#include "picker/PickerImage.h"

#include <algorithm>
#include <cmath>

#include "formats/SmartProfiles.h"
#include "library/Preferences.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"

namespace kro {
namespace {

constexpr Seconds kRetryDelay{0.5};
// One capture a display frame at most: the loop of capture and redraw would otherwise spin a core.
constexpr Seconds kFrameInterval{1.0 / 60.0};

ScreenRect intersection(const ScreenRect& a, const ScreenRect& b) {
    const double left = std::max(a.x, b.x);
    const double top = std::max(a.y, b.y);
    const double right = std::min(a.x + a.width, b.x + b.width);
    const double bottom = std::min(a.y + a.height, b.y + b.height);
    if (right <= left || bottom <= top) return {};
    return {left, top, right - left, bottom - top};
}

}  // namespace

std::optional<ScreenInfo> screenContaining(const std::vector<ScreenInfo>& screens, ScreenPoint point) {
    for (const auto& screen : screens) {
        if (screen.frame.contains(point.x, point.y)) return screen;
    }
    return std::nullopt;
}

ScreenRect captureRect(const ScreenInfo& screen, ScreenPoint mouse) {
    const int side = PickerImage::kCaptureSide;
    return {std::trunc(mouse.x - screen.frame.x) - side / 2, std::trunc(mouse.y - screen.frame.y) - side / 2,
            static_cast<double>(side), static_cast<double>(side)};
}

Bitmap normalizedImage(const Bitmap& capture, int scale, int dx, int dy) {
    const int side = PickerImage::kCaptureSide;
    Bitmap image{side, side, std::vector<uint32_t>(static_cast<size_t>(side) * side, 0)};
    for (int y = 0; y < side; ++y) {
        const int sourceY = (y - dy) * scale;
        if (sourceY < 0 || sourceY >= capture.height) continue;
        for (int x = 0; x < side; ++x) {
            const int sourceX = (x - dx) * scale;
            if (sourceX < 0 || sourceX >= capture.width) continue;
            image.pixels[static_cast<size_t>(y) * side + x] = capture.pixel(sourceX, sourceY);
        }
    }
    return image;
}

PickerImage::PickerImage(PickerImageServices services) : services_(services) {}

void PickerImage::setOpen(bool open) {
    isOpen = open;
    if (!open) stopCapture();
}

void PickerImage::startCapture(std::function<void()> completion) {
    captureCompletion = std::move(completion);
    capture();
}

void PickerImage::capture() {
    if (processing) return;
    if (env().clock->now() < captureRetryDate) return;
    const auto mouse = services_.pointer->location();
    const auto screen = screenContaining(services_.screenCapture->screens(), mouse);
    if (!screen) return;
    processing = true;
    const int generation = captureGeneration;
    const auto rect = captureRect(*screen, mouse);
    const auto delay = pickerImage ? kFrameInterval : Seconds(0);
    env().mainQueue->post([this, generation, screen = *screen, rect, mouse] { runCapture(generation, screen, rect, mouse); },
                          delay);
}

std::optional<CaptureFilter> PickerImage::filter(const ScreenInfo& screen) {
    if (const auto found = captureFilters.find(screen.displayID); found != captureFilters.end()) return found->second;
    std::string error;
    const uint64_t window = services_.window ? services_.window->windowID() : 0;
    auto made = services_.screenCapture->makeFilter(screen.displayID, window, error);
    if (!made) {
        logCaptureFailure(error.empty() ? "display " + std::to_string(screen.displayID) +
                                              " or picker window not found in shareable content"
                                        : error);
        return std::nullopt;
    }
    captureFilters[screen.displayID] = *made;
    return made;
}

void PickerImage::runCapture(int generation, ScreenInfo screen, ScreenRect rect, ScreenPoint mouse) {
    if (generation != captureGeneration) return;
    const auto captureFilter = filter(screen);
    if (!captureFilter) return finish(generation, std::nullopt, screen, mouse);

    const auto visible = intersection(rect, {0, 0, screen.frame.width, screen.frame.height});
    if (visible.width < 1 || visible.height < 1) return finish(generation, std::nullopt, screen, mouse);

    int scale = static_cast<int>(std::lround(screen.backingScaleFactor));
    if (scale < 2) scale = 1;
    std::string error;
    const auto image = services_.screenCapture->captureImage(*captureFilter, visible, static_cast<int>(visible.width) * scale,
                                                             static_cast<int>(visible.height) * scale, error);
    if (!image) {
        logCaptureFailure(error);
        return finish(generation, std::nullopt, screen, mouse);
    }
    captureFailed = false;
    finish(generation,
           normalizedImage(*image, scale, static_cast<int>(visible.x - rect.x), static_cast<int>(visible.y - rect.y)),
           screen, mouse);
}

void PickerImage::finish(int generation, std::optional<Bitmap> image, const ScreenInfo& screen, ScreenPoint mouse) {
    if (generation != captureGeneration) return;
    if (image && image->width >= 2) {
        pickerImage = std::move(*image);
        if (services_.window) services_.window->setNeedsDisplay();
        sample(screen, mouse);
    } else if (isOpen) {
        captureRetryDate = env().clock->now() + std::chrono::duration_cast<std::chrono::system_clock::duration>(kRetryDelay);
        env().mainQueue->post(
            [this, generation] {
                if (!isOpen || generation != captureGeneration) return;
                if (services_.window) services_.window->setNeedsDisplay();
                capture();
            },
            kRetryDelay);
    }
    processing = false;
    if (captureCompletion) {
        auto completion = std::move(captureCompletion);
        captureCompletion = nullptr;
        env().mainQueue->post(std::move(completion));
    }
}

void PickerImage::logCaptureFailure(const std::string& message) {
    captureRetryDate = env().clock->now() + std::chrono::duration_cast<std::chrono::system_clock::duration>(kRetryDelay);
    if (captureFailed) return;
    captureFailed = true;
    Sherlog::print("Screen capture failed: " + message, SherlogLevel::error, __FILE__, "logCaptureFailure(_:)", __LINE__);
}

void PickerImage::sample(const ScreenInfo& screen, ScreenPoint mouse) {
    const uint32_t pixel = pickerImage->pixel(pickerImage->width / 2, pickerImage->height / 2);
    const auto component = [pixel](int shift) { return ((pixel >> shift) & 0xFF) / 255.0; };
    // The pixel's numbers belong to the display's profile.
    const auto color = ColorValue::withComponents(screen.colorSpace ? screen.colorSpace : ColorSpace::sRGB(),
                                                  {component(16), component(8), component(0)}, component(24));

    auto profile = Preferences::shared().colorSpaceProfile();
    smartProfileItem = nullptr;
    if (Preferences::shared().smartProfiles() && services_.workspace) {
        std::vector<WorkspaceWindow> windows;
        for (const auto& window : services_.workspace->items()) {
            if (window.frame) windows.push_back(window);
        }
        std::stable_sort(windows.begin(), windows.end(), [](const auto& a, const auto& b) { return a.level > b.level; });
        for (const auto& window : windows) {
            if (!window.frame->contains(mouse.x, mouse.y)) continue;
            if (auto item = SmartProfiles::shared().itemInForce(window.bundle)) {
                profile = item->profile;
                smartProfileItem = item;
            }
            break;
        }
    }

    std::optional<ColorValue> converted = color;
    if (profile != ColorSpaceProfile::native) converted = color.converted(colorSpace(profile));
    if (converted) pickerColor = converted;
    if (pickerColor && pickerDelegate) pickerDelegate->pickerImageDidSample(*pickerColor, smartProfileItem);
    processing = false;
}

void PickerImage::stopCapture() {
    ++captureGeneration;
    captureCompletion = nullptr;
    if (services_.screenCapture) services_.screenCapture->endSession();
    captureFilters.clear();
    captureFailed = false;
    captureRetryDate = TimePoint::min();
    processing = false;
}

void PickerImage::drawPass() {
    if (!isOpen) return;
    if (!inBackground) capture();
    if (inBackground && !processing) capture();
    inBackground = true;
}

}  // namespace kro
