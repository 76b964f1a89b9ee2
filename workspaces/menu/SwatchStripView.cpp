#include "workspaces/menu/SwatchStripView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "library/User.h"
#include "workspaces/common/LibraryModels.h"
#include "workspaces/common/Swatch.h"

namespace kro {
namespace {

// The strip's geometry, shared by the drawing and the hit test.
struct StripLayout {
    QRect name;
    QRect strip;
    int side;

    StripLayout(const QRect& row, const QFontMetrics& metrics) {
        const QRect area = row.adjusted(8, 4, -8, -6);
        name = QRect(area.left(), area.top(), area.width(), metrics.height());
        strip = QRect(area.left(), name.bottom() + 4, area.width(), area.bottom() - name.bottom() - 4);
        side = std::min(strip.height(), (strip.width() - (SwatchStripView::kMaxSwatches - 1) * 4) / SwatchStripView::kMaxSwatches);
    }
    QRectF swatch(int at) const { return QRectF(strip.left() + at * (side + 4), strip.top(), side, side); }
};

PaletteRef rowPalette(const QModelIndex& index) {
    return User::shared()->palette(index.data(UuidRole).toString().toStdString());
}

class StripDelegate : public QStyledItemDelegate {
public:
    StripDelegate(const SwatchStripView* view) : QStyledItemDelegate(const_cast<SwatchStripView*>(view)), view_(view) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        return {240, option.fontMetrics.height() * 3 + 14};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyleOptionViewItem base = option;
        initStyleOption(&base, index);
        base.text.clear();
        base.state &= ~QStyle::State_Selected;
        option.widget->style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &base, painter, option.widget);
        const StripLayout layout(option.rect, option.fontMetrics);
        const auto palette = rowPalette(index);
        painter->save();
        painter->setPen(option.palette.color(QPalette::Text));
        const QString count = QString::number(index.data(CountRole).toULongLong());
        painter->drawText(layout.name, Qt::AlignVCenter | Qt::AlignLeft,
                          option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, layout.name.width() - 40));
        QColor dim = option.palette.color(QPalette::Text);
        dim.setAlphaF(0.6f);
        painter->setPen(dim);
        painter->drawText(layout.name, Qt::AlignVCenter | Qt::AlignRight, count);
        const bool current = view_->currentIndex() == index && view_->hasFocus();
        if (palette) {
            const int shown = std::min<int>(SwatchStripView::kMaxSwatches, static_cast<int>(palette->colors.size()));
            for (int at = 0; at < shown; ++at) {
                const auto rect = layout.swatch(at);
                paintSwatch(*painter, rect, displayColor(*palette->colors[static_cast<size_t>(at)]), option.palette, 4.0);
                if (current && at == view_->currentSwatch()) {
                    painter->setRenderHint(QPainter::Antialiasing);
                    painter->setPen(QPen(option.palette.color(QPalette::Highlight), 2.0));
                    painter->setBrush(Qt::NoBrush);
                    painter->drawRoundedRect(rect.adjusted(-2, -2, 2, 2), 5, 5);
                }
            }
            if (shown == 0) {
                painter->drawText(layout.strip, Qt::AlignVCenter | Qt::AlignLeft, "No colors yet");
            }
        }
        painter->restore();
    }

private:
    const SwatchStripView* view_;
};

}  // namespace

SwatchStripView::SwatchStripView(QWidget* parent) : QListView(parent) {
    setItemDelegate(new StripDelegate(this));
    setSelectionMode(QAbstractItemView::NoSelection);
    setUniformItemSizes(true);
    setMouseTracking(true);
}

int SwatchStripView::swatchAt(const QModelIndex& index, const QPoint& point) const {
    if (!index.isValid()) return -1;
    const StripLayout layout(visualRect(index), fontMetrics());
    const auto palette = rowPalette(index);
    if (!palette) return -1;
    const int shown = std::min<int>(kMaxSwatches, static_cast<int>(palette->colors.size()));
    for (int at = 0; at < shown; ++at) {
        if (layout.swatch(at).contains(point)) return at;
    }
    return -1;
}

ColorRef SwatchStripView::colorAt(const QModelIndex& index, int swatch) const {
    const auto palette = rowPalette(index);
    if (!palette || swatch < 0 || static_cast<size_t>(swatch) >= palette->colors.size()) return nullptr;
    return palette->colors[static_cast<size_t>(swatch)];
}

void SwatchStripView::mouseReleaseEvent(QMouseEvent* event) {
    const auto index = indexAt(event->position().toPoint());
    const int at = swatchAt(index, event->position().toPoint());
    if (event->button() == Qt::LeftButton && at >= 0) {
        setCurrentIndex(index);
        swatch_ = at;
        if (auto color = colorAt(index, at); color && onColor) onColor(color);
        return;
    }
    QListView::mouseReleaseEvent(event);
}

void SwatchStripView::keyPressEvent(QKeyEvent* event) {
    const auto index = currentIndex();
    switch (event->key()) {
        case Qt::Key_Left:
            swatch_ = std::max(0, swatch_ - 1);
            viewport()->update();
            return;
        case Qt::Key_Right:
            if (colorAt(index, swatch_ + 1) && swatch_ + 1 < kMaxSwatches) ++swatch_;
            viewport()->update();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (auto color = colorAt(index, swatch_); color && onColor) onColor(color);
            return;
        default: QListView::keyPressEvent(event);
    }
}

void SwatchStripView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    // Keeps the column when moving between rows, as far as the new row reaches.
    while (swatch_ > 0 && !colorAt(current, swatch_)) --swatch_;
    viewport()->update();
}

}  // namespace kro
