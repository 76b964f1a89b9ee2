#pragma once
// A list of palettes, each row its name over a strip of its colours. A click on a swatch, or Return on the
// swatch chosen with the arrow keys (Left and Right within a row, Up and Down between rows), uses that colour.
#include <QListView>
#include <functional>

#include "library/Color.h"

namespace kro {

class SwatchStripView : public QListView {
public:
    explicit SwatchStripView(QWidget* parent = nullptr);

    // What a chosen colour does.
    std::function<void(const ColorRef&)> onColor;
    // The swatch under a point of the viewport, or -1.
    int swatchAt(const QModelIndex& index, const QPoint& point) const;
    int currentSwatch() const { return swatch_; }
    // The colour a row shows at `swatch`.
    ColorRef colorAt(const QModelIndex& index, int swatch) const;

    static constexpr int kMaxSwatches = 12;

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    int swatch_ = 0;
};

}  // namespace kro
