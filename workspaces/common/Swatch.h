#pragma once
// Colour swatches: the one drawing of a colour every window uses (rounded, a checkerboard under
// translucent colours, a hairline edge that reads on light and dark themes), and a widget that shows one.
#include <QColor>
#include <QWidget>
#include <functional>
#include <optional>

#include "library/Color.h"
#include "platform/ColorValue.h"

namespace kro {

// The colour as the screen shows it: converted to sRGB, clamped, alpha kept.
QColor displayColor(const ColorValue& color);
QColor displayColor(const Color& color);

// Draws a swatch filling `rect`. Vector drawing only, so it stays crisp at any scale factor.
void paintSwatch(QPainter& painter, const QRectF& rect, const QColor& color, const QPalette& palette,
                 qreal radius = 4.0);

class ColorSwatch : public QWidget {
public:
    explicit ColorSwatch(QWidget* parent = nullptr);

    void setColor(std::optional<QColor> color);
    const std::optional<QColor>& color() const { return color_; }
    // A click, or Space/Return while focused; a swatch with an action takes keyboard focus.
    void setAction(std::function<void()> action);

    QSize sizeHint() const override { return {48, 48}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::optional<QColor> color_;
    std::function<void()> action_;
};

}  // namespace kro
