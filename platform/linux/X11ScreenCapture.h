#pragma once
// Live capture without the loupe: the picture of a rectangle is put together from the top-level windows' own
// pixmaps (XComposite), bottom to top, over the desktop background, leaving the loupe's window out. While a
// session runs the root's subwindows are redirected automatically, so every window keeps its pixmap even
// when no compositing manager runs; the server still paints the screen as before.
//
// The background is the wallpaper setter's pixmap (_XROOTPMAP_ID). Where there is none (a plain colour set
// with xsetroot, or the server's own pattern), the screen is read once as each session begins, before the
// loupe shows, since the root's own pixels cannot be read from under the loupe later. Windows are painted
// over it live, so only a window that left its place during the session leaves a trace.
#include <memory>

#include "platform/ScreenCapture.h"

namespace kro {

class X11ScreenCapture final : public ScreenCapture {
public:
    X11ScreenCapture();
    ~X11ScreenCapture() override;
    std::vector<ScreenInfo> screens() const override;
    std::optional<CaptureFilter> makeFilter(uint32_t displayID, uint64_t excludedWindow, std::string& error) override;
    std::optional<Bitmap> captureImage(const CaptureFilter& filter, const ScreenRect& sourceRect, int width, int height,
                                       std::string& error) override;
    void beginSession() override;
    void endSession() override;

private:
    bool composite_ = false;
    // The screen as the session found it, where no wallpaper pixmap exists.
    std::optional<Bitmap> background_;
    bool redirected_ = false;
    std::shared_ptr<const ColorSpace> displayProfile_;
};

}  // namespace kro
