#pragma once
// A field for a colour's hex text ("#1E90FF", "1e90ff", "#fff"). Text that does not read as a colour is
// refused where it stands: the field is marked, says why in its tooltip and accessible description, and
// the colour it showed stays.
#include <QLineEdit>
#include <functional>
#include <optional>

#include "platform/ColorValue.h"

namespace kro {

// Three or six hex digits, with or without "#", white space around allowed. Nothing for anything else.
std::optional<ColorValue> colorFromHexEntry(const QString& text);

class HexEntry : public QLineEdit {
public:
    explicit HexEntry(QWidget* parent = nullptr);

    // Shows the colour's hex text (and clears a refusal).
    void showColor(const ColorValue& color);
    bool isRefused() const { return refused_; }
    // Called with each colour the person enters (Return or leaving the field).
    std::function<void(const ColorValue&)> onColor;

private:
    void commit();
    void setRefused(bool refused);

    bool refused_ = false;
};

}  // namespace kro
