#pragma once
// The loupe: a window of 800 by 800 interface pixels centred on the pointer's device pixel that shows the lens, the colour's text, the
// collected swatches and the hint. It holds the pointer while a session runs, so every click and wheel turn
// comes here, and reports the modifiers as they change.
//
// With a backdrop (a Wayland session) it instead covers the whole screen with the backdrop's still and draws the
// lens over it at the pointer; it then has the keyboard too, and hands key presses to the backdrop.
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <optional>

#include "picker/Picker.h"
#include "platform/LoupeWindow.h"
#include "platform/linux/LoupeBackdrop.h"

namespace kro {

class QtLoupeWindow final : public QWidget, public LoupeWindow {
public:
    QtLoupeWindow();
    void setPicker(Picker* picker) { picker_ = picker; }
    void setBackdrop(LoupeBackdrop* backdrop);

    uint64_t windowID() const override;
    void setFrame(const ScreenRect& frame) override;
    void setAlpha(double alpha) override;
    void orderFront() override;
    void orderOut() override;
    void setNeedsDisplay() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void emitEvent(PointerEvent event);
    void updateMask();
    QRect overlayBox() const;
    void pollModifiers();
    void paintOverlay(class QPainter& painter);
    void paintOverBackdrop(class QPainter& painter, const QRect& exposed);
    QPointF travel(const QPointF& local);
    QRect lensRect() const;
    void pickWithoutLoupe();
    void showOverBackdrop();

    Picker* picker_ = nullptr;
    Bitmap canvas_;
    QTimer modifierTimer_;
    int modifiers_ = 0;
    // The pointer in device pixels when it was last placed.
    QPointF lastPosition_;
    double alpha_ = 1;
    // What the window's shape was made for: it is remade only when one of these changes.
    struct MaskKey {
        bool shown = false;
        int size = 0;
        QRect overlay;
        bool operator==(const MaskKey&) const = default;
    };
    std::optional<MaskKey> maskKey_;
    LoupeBackdrop* backdrop_ = nullptr;
    QPointF lensCentre_;  // in the backdrop's coordinates
    QRect paintedLens_;
    bool sessionOpen_ = false;
    // For the log: how long the first lens frame took to come, and what drawing a frame costs.
    QElapsedTimer sinceOpen_;
    int lensFrames_ = 0;
    qint64 drawingNs_ = 0;
    void lensFrameDrawn(const QElapsedTimer& drawing);
    void logSessionFrames();
};

}  // namespace kro
