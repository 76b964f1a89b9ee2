#include "workspaces/main/PaletteRowDelegate.h"

#include <QApplication>
#include <QPainter>

#include "workspaces/common/LibraryModels.h"

namespace kro {

void paintPadlock(QPainter& painter, const QRectF& rect, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal w = rect.width();
    const QRectF body(rect.left(), rect.top() + rect.height() * 0.45, w, rect.height() * 0.55);
    const QRectF shackle(rect.left() + w * 0.2, rect.top(), w * 0.6, rect.height() * 0.8);
    painter.setPen(QPen(color, std::max<qreal>(1.2, w / 7)));
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(shackle, 0, 180 * 16);
    painter.drawLine(QPointF(shackle.left(), shackle.center().y()), QPointF(shackle.left(), body.top()));
    painter.drawLine(QPointF(shackle.right(), shackle.center().y()), QPointF(shackle.right(), body.top()));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(body, w / 8, w / 8);
    painter.restore();
}

QSize PaletteRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {200, option.fontMetrics.height() + 14};
}

void PaletteRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem base = option;
    initStyleOption(&base, index);
    base.text.clear();
    const QWidget* widget = option.widget;
    (widget ? widget->style() : QApplication::style())->drawPrimitive(QStyle::PE_PanelItemViewItem, &base, painter, widget);

    const bool selected = option.state & QStyle::State_Selected;
    const auto group = option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const QColor textColor = option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    QColor dim = textColor;
    dim.setAlphaF(0.65f);
    const auto metrics = option.fontMetrics;
    QRect area = option.rect.adjusted(8, 0, -8, 0);

    painter->save();
    // The target dot sits in a column of its own, so names line up.
    const int dot = metrics.height() / 2;
    if (index.data(TargetRole).toBool()) {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(selected ? textColor : option.palette.color(QPalette::Highlight));
        painter->drawEllipse(QRectF(area.left(), area.center().y() - dot / 2.0, dot, dot));
    }
    area.setLeft(area.left() + dot + 8);

    const QString count = QString::number(index.data(CountRole).toULongLong());
    const int countWidth = metrics.horizontalAdvance(count);
    painter->setPen(dim);
    painter->drawText(QRect(area.right() - countWidth, area.top(), countWidth, area.height()), Qt::AlignVCenter, count);
    int right = area.right() - countWidth - 6;
    if (index.data(LockedRole).toBool()) {
        const int lock = metrics.height() * 2 / 3;
        paintPadlock(*painter, QRectF(right - lock, area.center().y() - lock / 2.0, lock * 0.8, lock), dim);
        right -= lock + 6;
    }
    QFont font = option.font;
    if (index.data(HistoryRole).toBool()) font.setItalic(true);
    painter->setFont(font);
    painter->setPen(textColor);
    const QRect nameRect(area.left(), area.top(), right - area.left(), area.height());
    painter->drawText(nameRect, Qt::AlignVCenter, QFontMetrics(font).elidedText(index.data().toString(), Qt::ElideRight, nameRect.width()));
    painter->restore();
}

}  // namespace kro
