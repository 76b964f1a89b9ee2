#pragma once
// The loupe: a window of 800 by 800 interface pixels centred on the pointer's device pixel that shows the lens, the colour's text, the
// collected swatches and the hint. It holds the pointer while a session runs, so every click and wheel turn
// comes here, and reports the modifiers as they change.
#include <QTimer>
#include <QWidget>

#include <optional>

#include "picker/Picker.h"
#include "platform/LoupeWindow.h"

namespace kro {

class QtLoupeWindow final : public QWidget, public LoupeWindow {
public:
    QtLoupeWindow();
    void setPicker(Picker* picker) { picker_ = picker; }

    uint64_t windowID() const override;
    void setFrame(const ScreenRect& frame) override;
    void setAlpha(double alpha) override;
    void orderFront() override;
    void orderOut() override;
    void setNeedsDisplay() override { update(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;

private:
    void emitEvent(PointerEvent event);
    void updateMask();
    QRect overlayBox() const;
    void pollModifiers();
    void paintOverlay(class QPainter& painter);

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
};

}  // namespace kro
