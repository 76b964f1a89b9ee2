#pragma once
// Draws one colour of a ColorListModel: in a grid, a swatch with the colour's name and its text in the
// selected format under it; in a list, a small swatch, the name, and the text at the right.
#include <QStyledItemDelegate>

namespace kro {

class ColorCellDelegate : public QStyledItemDelegate {
public:
    explicit ColorCellDelegate(QObject* parent = nullptr) : QStyledItemDelegate(parent) {}

    void setGrid(bool grid) { grid_ = grid; }
    bool grid() const { return grid_; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // Renaming edits the name, in a line editor over the cell's text.
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // The grid's cell size for a font: the grid view lays out in these steps.
    static QSize gridCell(const QFontMetrics& metrics);

private:
    bool grid_ = true;
};

}  // namespace kro
