#pragma once
// The picker's screen and pointer in a Wayland session. The screen is a still taken when the loupe opens (by the
// compositor's screen copy, else the desktop portal's Screenshot), or the one colour the portal's PickColor
// gives; the pointer is where the loupe's full-screen window last saw it, plus the moves the picker made itself
// (arrow keys, precision mode), since no Wayland program may place the real pointer.
//
// Coordinates are device pixels of the still, so the sampled pixel is the one under the pointer whatever the
// screen's scale, fractional ones included.
#include <QElapsedTimer>
#include <QImage>
#include <QPointer>
#include <QScreen>

#include <memory>

#include "platform/DesktopSession.h"
#include "platform/PointerControl.h"
#include "platform/Portal.h"
#include "platform/PortalHotKeyCenter.h"
#include "platform/ScreenCapture.h"
#include "platform/linux/LoupeBackdrop.h"

namespace kro {

class WaylandScreenCopy;

class WaylandStill final : public ScreenCapture, public PointerControl, public LoupeBackdrop {
public:
    struct Services {
        CaptureRoute route = CaptureRoute::none;
        SessionOffers offers;
        WaylandScreenCopy* screenCopy = nullptr;
        PortalBus* portal = nullptr;
        PortalHotKeyCenter* hotKeys = nullptr;
        // Informational lines for the log.
        std::function<void(const std::string&)> log;
    };
    explicit WaylandStill(Services services);
    ~WaylandStill() override;

    // ScreenCapture: the still's screen, once it is there.
    std::vector<ScreenInfo> screens() const override;
    std::optional<CaptureFilter> makeFilter(uint32_t displayID, uint64_t excludedWindow, std::string& error) override;
    std::optional<Bitmap> captureImage(const CaptureFilter& filter, const ScreenRect& sourceRect, int width, int height,
                                       std::string& error) override;

    // PointerControl
    ScreenPoint location() const override;
    void moveTo(ScreenPoint point) override;
    bool isCursorVisible() const override { return hidden_ == 0; }
    void hideCursor() override { ++hidden_; }
    void unhideCursor() override {
        if (hidden_ > 0) --hidden_;
    }

    // LoupeBackdrop
    bool withoutLoupe() const override { return route_ == CaptureRoute::portalPickColor; }
    QScreen* screen() const override { return screen_; }
    void sessionShown(QScreen* screen) override;
    void sessionHidden() override;
    const QImage* picture() const override { return picture_.isNull() ? nullptr : &picture_; }
    QPointF pointerMoved(QPointF local) override;
    QPointF toWindow(QPointF point) const override;
    bool keyPressed(const QKeyEvent& event) override;

private:
    void take();
    void takeScreenCopy();
    void takeScreenshot();
    void takePickedColor();
    void arrived(QImage picture, const std::string& how);
    void failed(const std::string& problem, bool fallBack = true);
    QPointF origin() const;

    Services services_;
    CaptureRoute route_;
    QPointer<QScreen> screen_;
    QImage picture_;
    double ratio_ = 1;  // device pixels per logical pixel of the screen
    QPointF local_;     // the pointer in the window, logical pixels
    bool pointerKnown_ = false;
    QPointF offset_;  // the picker's own moves, device pixels
    int hidden_ = 0;
    int generation_ = 0;
    bool taking_ = false;
    std::shared_ptr<PortalRequest> request_;
    QElapsedTimer sinceShown_;
};

// The part of a picture of the whole desktop (`desktop`, logical) that shows `screen` (logical), in the
// picture's pixels: portals give one picture of every screen together.
QRect screenPart(const QImage& picture, const QRect& desktop, const QRect& screen);

}  // namespace kro
