#pragma once
// The contrast checker's preview: sample text in the foreground colour on the background colour, in a
// normal and a large size, both drawn as a person with the chosen colour vision sees them. Only the
// drawing is simulated: the checker's score is always that of the colours themselves.
#include <QWidget>

#include "formats/color/ColorBlindness.h"
#include "platform/ColorValue.h"

namespace kro {

class ContrastPreview : public QWidget {
public:
    explicit ContrastPreview(QWidget* parent = nullptr);

    void setColors(const ColorValue& foreground, const ColorValue& background);
    void setBlindness(ColorBlindness blindness);
    // The two colours as drawn.
    QColor drawnForeground() const;
    QColor drawnBackground() const;

    QSize sizeHint() const override { return {360, 132}; }
    QSize minimumSizeHint() const override { return {220, 110}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ColorValue foreground_ = ColorValue::rgb(0, 0, 0);
    ColorValue background_ = ColorValue::rgb(1, 1, 1);
    ColorBlindness blindness_ = ColorBlindness::normal;
};

}  // namespace kro
