#include "workspaces/common/Swatch.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace kro {

QColor displayColor(const ColorValue& color) {
    const auto srgb = color.usingColorSpace(ColorSpace::sRGB());
    auto unit = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
    return QColor::fromRgbF(unit(srgb.red()), unit(srgb.green()), unit(srgb.blue()), unit(color.alpha()));
}

QColor displayColor(const Color& color) { return displayColor(color.colorValue()); }

void paintSwatch(QPainter& painter, const QRectF& rect, const QColor& color, const QPalette& palette, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    if (color.alpha() < 255) {
        // A checkerboard shows through a translucent colour.
        painter.setClipPath(shape);
        painter.fillRect(rect, Qt::white);
        const qreal cell = std::max<qreal>(4.0, std::min(rect.width(), rect.height()) / 6.0);
        for (qreal y = rect.top(); y < rect.bottom(); y += cell) {
            for (qreal x = rect.left(); x < rect.right(); x += cell) {
                if (static_cast<int>((x - rect.left()) / cell + (y - rect.top()) / cell) % 2 == 0) {
                    painter.fillRect(QRectF(x, y, cell, cell), QColor(204, 204, 204));
                }
            }
        }
        painter.setClipping(false);
    }
    QColor edge = palette.color(QPalette::WindowText);
    edge.setAlphaF(0.25f);
    painter.setPen(QPen(edge, 1.0));
    painter.setBrush(color);
    painter.drawPath(shape);
    painter.restore();
}

ColorSwatch::ColorSwatch(QWidget* parent) : QWidget(parent) {
    setMinimumSize(24, 24);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ColorSwatch::setColor(std::optional<QColor> color) {
    color_ = std::move(color);
    update();
}

void ColorSwatch::setAction(std::function<void()> action) {
    action_ = std::move(action);
    setFocusPolicy(action_ ? Qt::StrongFocus : Qt::NoFocus);
    setCursor(action_ ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void ColorSwatch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF area = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (color_) {
        paintSwatch(painter, area, *color_, palette(), 8.0);
    } else {
        QPen dashed(palette().color(QPalette::Mid), 1.0, Qt::DashLine);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(dashed);
        painter.drawRoundedRect(area, 8.0, 8.0);
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(area.adjusted(1, 1, -1, -1), 8.0, 8.0);
    }
}

void ColorSwatch::mouseReleaseEvent(QMouseEvent* event) {
    if (action_ && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) action_();
}

void ColorSwatch::keyPressEvent(QKeyEvent* event) {
    if (action_ && (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        action_();
        return;
    }
    QWidget::keyPressEvent(event);
}

}  // namespace kro
