#pragma once
// Draws one palette of the sidebar: its name, its colour count, a padlock when it is locked, and a dot when
// it is the palette that picks go to.
#include <QStyledItemDelegate>

namespace kro {

class PaletteRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

// A padlock drawn in `rect` with `color`, for any view that marks locked palettes.
void paintPadlock(QPainter& painter, const QRectF& rect, const QColor& color);

}  // namespace kro
