#include "workspaces/common/HexEntry.h"

#include <QRegularExpression>

#include "formats/color/ColorConversions.h"

namespace kro {

std::optional<ColorValue> colorFromHexEntry(const QString& text) {
    static const QRegularExpression hex("^#?([0-9A-Fa-f]{3}|[0-9A-Fa-f]{6})$");
    const auto match = hex.match(text.trimmed());
    if (!match.hasMatch()) return std::nullopt;
    QString digits = match.captured(1);
    if (digits.size() == 3) digits = QString("%1%1%2%2%3%3").arg(digits[0]).arg(digits[1]).arg(digits[2]);
    return colorFromHex(digits.toStdString());
}

HexEntry::HexEntry(QWidget* parent) : QLineEdit(parent) {
    setMaxLength(16);
    setPlaceholderText("#RRGGBB");
    connect(this, &QLineEdit::editingFinished, this, [this] { commit(); });
    connect(this, &QLineEdit::textEdited, this, [this] {
        if (refused_) setRefused(false);
    });
}

void HexEntry::showColor(const ColorValue& color) {
    setRefused(false);
    const QString shown = "#" + QString::fromStdString(hexText(color));
    if (text() != shown) setText(shown);
}

void HexEntry::commit() {
    const auto color = colorFromHexEntry(text());
    if (!color) return setRefused(true);
    setRefused(false);
    if (onColor) onColor(*color);
}

void HexEntry::setRefused(bool refused) {
    refused_ = refused;
    // The style sheet draws the mark in the theme's own red-ish "negative" colour on both themes.
    setStyleSheet(refused ? "QLineEdit { border: 2px solid #d64541; border-radius: 3px; }" : QString());
    const QString why = refused ? "Not a hex color: type three or six hex digits, such as #1E90FF" : QString();
    setToolTip(why);
    setAccessibleDescription(why);
}

}  // namespace kro
