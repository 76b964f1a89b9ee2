#include "workspaces/contrast/ContrastPreview.h"

#include <QPainter>

#include "workspaces/common/Swatch.h"

namespace kro {

ContrastPreview::ContrastPreview(QWidget* parent) : QWidget(parent) {
    setAccessibleName("Text preview");
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ContrastPreview::setColors(const ColorValue& foreground, const ColorValue& background) {
    foreground_ = foreground;
    background_ = background;
    update();
}

void ContrastPreview::setBlindness(ColorBlindness blindness) {
    blindness_ = blindness;
    setAccessibleDescription(blindness == ColorBlindness::normal
                                 ? QString()
                                 : "Drawn as seen with " + QString::fromStdString(text(blindness)));
    update();
}

QColor ContrastPreview::drawnForeground() const { return displayColor(simulated(foreground_, blindness_)); }
QColor ContrastPreview::drawnBackground() const { return displayColor(simulated(background_, blindness_)); }

void ContrastPreview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    paintSwatch(painter, area, drawnBackground(), palette(), 8);
    painter.setPen(drawnForeground());

    const QRectF inner = area.adjusted(14, 10, -14, -10);
    QFont large = font();
    large.setPointSizeF(18);
    large.setBold(true);
    QFont normal = font();
    normal.setPointSizeF(11);
    const qreal largeHeight = QFontMetricsF(large).height();
    painter.setFont(large);
    painter.drawText(QRectF(inner.left(), inner.top(), inner.width(), largeHeight), Qt::AlignLeft | Qt::AlignVCenter,
                     "Large text 18pt");
    painter.setFont(normal);
    painter.drawText(QRectF(inner.left(), inner.top() + largeHeight + 4, inner.width(), inner.height() - largeHeight - 4),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                     "Normal text: the quick brown fox jumps over the lazy dog. 0123456789");
}

}  // namespace kro
