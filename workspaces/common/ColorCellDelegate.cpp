#include "workspaces/common/ColorCellDelegate.h"

#include <QPainter>

#include "workspaces/common/LibraryModels.h"
#include "workspaces/common/Swatch.h"

namespace kro {

QSize ColorCellDelegate::gridCell(const QFontMetrics& metrics) {
    const int width = std::max(112, metrics.horizontalAdvance(QString(14, 'M')) * 2 / 3);
    return {width, width * 3 / 4 + 2 * metrics.height() + 14};
}

QSize ColorCellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    if (grid_) return gridCell(option.fontMetrics);
    return {option.rect.width() > 0 ? option.rect.width() : 320, std::max(36, option.fontMetrics.height() * 2 + 8)};
}

void ColorCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    // The selection is drawn here rather than by the style: a tinted, outlined cell reads the same in every
    // style, theme and focus state, where some styles draw an unfocused selection in the text's colour.
    const bool selected = option.state & QStyle::State_Selected;
    const auto group = option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const QColor textColor = option.palette.color(group, QPalette::Text);
    QColor dimColor = textColor;
    dimColor.setAlphaF(0.7f);
    if (selected || (option.state & QStyle::State_HasFocus)) {
        QColor highlight = option.palette.color(QPalette::Active, QPalette::Highlight);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(highlight, selected ? 2.0 : 1.0, selected ? Qt::SolidLine : Qt::DotLine));
        highlight.setAlphaF(selected ? 0.18f : 0.0f);
        painter->setBrush(highlight);
        painter->drawRoundedRect(QRectF(option.rect).adjusted(2, 2, -2, -2), 6, 6);
        painter->restore();
    }
    const auto color = index.data(ColorRole).value<QColor>();
    const auto name = index.data(NameRole).toString();
    const auto text = index.data(Qt::DisplayRole).toString();
    const auto metrics = option.fontMetrics;
    const QRect area = option.rect.adjusted(6, 6, -6, -6);

    painter->save();
    if (grid_) {
        const int textHeight = 2 * metrics.height();
        const QRectF swatch(area.left(), area.top(), area.width(), area.height() - textHeight - 4);
        paintSwatch(*painter, swatch, color, option.palette, 6.0);
        QRect line(area.left(), area.bottom() - textHeight + 1, area.width(), metrics.height());
        painter->setPen(textColor);
        painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter, metrics.elidedText(name, Qt::ElideRight, line.width()));
        line.translate(0, metrics.height());
        painter->setPen(dimColor);
        painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter, metrics.elidedText(text, Qt::ElideMiddle, line.width()));
    } else {
        const int side = area.height();
        paintSwatch(*painter, QRectF(area.left(), area.top(), side, side), color, option.palette, 4.0);
        const QRect texts = area.adjusted(side + 10, 0, 0, 0);
        const int textWidth = std::min(metrics.horizontalAdvance(text) + 8, texts.width() / 2);
        const QRect textRect(texts.right() - textWidth, texts.top(), textWidth, texts.height());
        painter->setPen(dimColor);
        painter->drawText(textRect, Qt::AlignRight | Qt::AlignVCenter, metrics.elidedText(text, Qt::ElideMiddle, textWidth));
        const QRect nameRect(texts.left(), texts.top(), texts.width() - textWidth - 8, texts.height());
        painter->setPen(textColor);
        painter->drawText(nameRect, Qt::AlignLeft | Qt::AlignVCenter, metrics.elidedText(name, Qt::ElideRight, nameRect.width()));
    }
    painter->restore();
}

void ColorCellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex&) const {
    const auto metrics = option.fontMetrics;
    const QRect area = option.rect.adjusted(4, 4, -4, -4);
    if (grid_) {
        editor->setGeometry(area.left(), area.bottom() - 2 * metrics.height() - 4, area.width(), metrics.height() + 8);
    } else {
        editor->setGeometry(area.adjusted(area.height() + 8, 0, -area.width() / 2, 0));
    }
}

}  // namespace kro
