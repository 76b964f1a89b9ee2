#include "workspaces/main/Inspector.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <cmath>

#include "app/AppDelegate.h"
#include "formats/ColorFormats.h"
#include "formats/color/ColorBlindness.h"
#include "formats/color/ColorConversions.h"
#include "formats/color/WCAG.h"
#include "library/Notifications.h"
#include "library/User.h"
#include "workspaces/common/LibraryActions.h"
#include "workspaces/common/Swatch.h"

namespace kro {
namespace {

constexpr ColorBlindness kPreviews[4] = {ColorBlindness::deuteranopia, ColorBlindness::protanopia,
                                          ColorBlindness::tritanopia, ColorBlindness::achromatopsia};

QString number(double value, int decimals = 0) { return QString::number(value, 'f', decimals); }

QLabel* heading(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    auto font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

QString componentsText(const ColorValue& value) {
    const auto hsl = kro::hsl(value);
    const auto hwb = kro::hwb(value);
    const auto cmyk = kro::cmyk(value);
    const auto srgb = value.usingColorSpace(ColorSpace::sRGB());
    auto byte = [](double unit) { return QString::number(static_cast<int>(std::lround(std::clamp(unit, 0.0, 1.0) * 255))); };
    return QString("Hex\t#%1\nRGB\t%2, %3, %4\nHSL\t%5°, %6%, %7%\nHWB\t%8°, %9%, %10%\nCMYK\t%11%, %12%, %13%, %14%\nAlpha\t%15")
        .arg(QString::fromStdString(hexText(value)))
        .arg(byte(srgb.red()), byte(srgb.green()), byte(srgb.blue()))
        .arg(number(hsl.hue), number(hsl.saturation), number(hsl.lightness))
        .arg(number(hwb.hue), number(hwb.whiteness), number(hwb.blackness))
        .arg(number(cmyk.cyan), number(cmyk.magenta), number(cmyk.yellow), number(cmyk.black))
        .arg(number(value.alpha(), 2));
}

QString contrastLine(const ColorValue& value, const ColorValue& against, const QString& name) {
    const double ratio = WCAG::ratio(value, against);
    return QString("On %1\t%2:1\t%3")
        .arg(name, QString::fromStdString(WCAG::ratioText(ratio)), QString::fromStdString(label(WCAG::level(ratio))));
}

}  // namespace

Inspector::Inspector(AppDelegate* delegate, LibraryActions& actions, QWidget* parent)
    : QWidget(parent), delegate_(delegate), actions_(actions) {
    setAccessibleName("Inspector");
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    // It takes the focus so the keys scroll it, so a screen reader names it when it does.
    scroll->setAccessibleName("Color details");
    // The inspector grows downwards only: every line fits its width or wraps.
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    outer->addWidget(scroll);
    auto* body = new QWidget(scroll);
    scroll->setWidget(body);
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins(12, 12, 12, 12);

    swatch_ = new ColorSwatch(body);
    swatch_->setMinimumHeight(120);
    swatch_->setAccessibleName("Inspected color");
    swatch_->setAccessibleDescription("Copies the color in the selected format");
    swatch_->setAction([this] {
        if (auto record = color()) {
            if (delegate_) delegate_->copyColor(record, true, ColorDeliveryTarget::clipboard);
            actions_.notice("Color Copied");
        } else if (picked_) {
            copyText(ColorFormats::shared().clipboardString(*picked_));
        }
    });
    layout->addWidget(swatch_);

    name_ = new QLineEdit(body);
    name_->setAccessibleName("Color name");
    name_->setPlaceholderText("Name");
    connect(name_, &QLineEdit::editingFinished, this, [this] {
        const auto record = color();
        const auto palette = User::shared()->palette(paletteUUID_);
        const auto text = name_->text().trimmed().toStdString();
        if (!record || !palette || text.empty() || record->name == text) return;
        if (!actions_.edit(*palette, [&] { return User::shared()->renameColor(palette, record, text); })) refresh();
    });
    layout->addWidget(name_);

    add_ = new QPushButton("Add to Palette", body);
    add_->setAccessibleName("Add the picked color to the palette");
    connect(add_, &QPushButton::clicked, this, [this] {
        const auto palette = User::shared()->palette(paletteUUID_);
        if (!picked_ || !palette) return;
        const auto made = Color::make(*picked_);
        if (actions_.edit(*palette, [&] { return User::shared()->copyColors({made}, palette, 0); })) {
            actions_.notice("Color Created");
        } else if (!palette->lock) {
            actions_.notice("The palette already holds this color");
        }
    });
    layout->addWidget(add_);

    auto* pick = new QPushButton("Pick a Color…", body);
    pick->setAccessibleName("Pick a color into the inspector");
    connect(pick, &QPushButton::clicked, this, [this] {
        if (delegate_) delegate_->openPicker(PickerSource::inspector);
    });
    layout->addWidget(pick);

    layout->addWidget(heading("Formats", body));
    formats_ = new QListWidget(body);
    formats_->setAccessibleName("Color formats");
    formats_->setAccessibleDescription("Activating a format copies its text");
    formats_->setMinimumHeight(160);
    formats_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    formats_->setTextElideMode(Qt::ElideMiddle);
    // Each row is a format's name over its text: alternate shading keeps the pairs together.
    formats_->setAlternatingRowColors(true);
    connect(formats_, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { copyText(item->data(Qt::UserRole).toString().toStdString()); });
    connect(formats_, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { copyText(item->data(Qt::UserRole).toString().toStdString()); });
    layout->addWidget(formats_, 1);

    layout->addWidget(heading("Components", body));
    components_ = new QLabel(body);
    components_->setAccessibleName("Color components");
    components_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    layout->addWidget(components_);

    layout->addWidget(heading("Contrast", body));
    contrast_ = new QLabel(body);
    contrast_->setAccessibleName("Contrast against white and black");
    contrast_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    layout->addWidget(contrast_);

    layout->addWidget(heading("Color Blindness", body));
    auto* previews = new QGridLayout();
    for (int i = 0; i < 4; ++i) {
        blindness_[i] = new ColorSwatch(body);
        blindness_[i]->setMinimumSize(40, 32);
        const auto name = QString::fromStdString(text(kPreviews[i]));
        blindness_[i]->setAccessibleName(name + " preview");
        auto* caption = new QLabel(name, body);
        caption->setAlignment(Qt::AlignHCenter);
        caption->setWordWrap(true);
        previews->addWidget(blindness_[i], (i / 2) * 2, i % 2);
        previews->addWidget(caption, (i / 2) * 2 + 1, i % 2);
    }
    layout->addLayout(previews);

    observers_.on({Notifications::userUpdated, Notifications::userCloudMerged, Notifications::colorFormatUpdated},
                  [this] { refresh(); });
    refresh();
}

ColorRef Inspector::color() const {
    const auto palette = User::shared()->palette(paletteUUID_);
    if (!palette || colorUUID_.empty()) return nullptr;
    for (const auto& record : palette->colors) {
        if (record->uuid == colorUUID_) return record;
    }
    return nullptr;
}

void Inspector::showColor(const std::string& paletteUUID, const std::string& colorUUID) {
    paletteUUID_ = paletteUUID;
    colorUUID_ = colorUUID;
    picked_.reset();
    refresh();
}

void Inspector::showPicked(const ColorValue& value, const std::string& paletteUUID) {
    paletteUUID_ = paletteUUID;
    colorUUID_.clear();
    picked_ = value;
    refresh();
}

void Inspector::clear() { showColor(paletteUUID_, ""); }

void Inspector::copyText(const std::string& text) {
    if (text.empty()) return;
    if (delegate_) delegate_->sendOutputToClipboard(true, text);
    actions_.notice("Copied " + text);
}

void Inspector::refresh() {
    const auto record = color();
    std::optional<ColorValue> value = picked_;
    if (record) value = record->colorValue();
    const bool shown = value.has_value();
    for (QWidget* part : std::initializer_list<QWidget*>{name_, formats_, components_, contrast_}) part->setEnabled(shown);
    add_->setVisible(picked_.has_value());
    if (!name_->hasFocus()) name_->setText(record ? QString::fromStdString(record->name.value_or("")) : QString());
    name_->setReadOnly(!record);
    if (!shown) {
        swatch_->setColor(std::nullopt);
        formats_->clear();
        components_->setText("No color selected");
        contrast_->clear();
        for (auto* preview : blindness_) preview->setColor(std::nullopt);
        return;
    }
    swatch_->setColor(displayColor(*value));
    refreshFormats(*value);
    components_->setText(componentsText(*value));
    contrast_->setText(contrastLine(*value, ColorValue::rgb(1, 1, 1), "white") + "\n" +
                       contrastLine(*value, ColorValue::rgb(0, 0, 0), "black"));
    for (int i = 0; i < 4; ++i) blindness_[i]->setColor(displayColor(simulated(*value, kPreviews[i])));
}

void Inspector::refreshFormats(const ColorValue& value) {
    const int current = formats_->currentRow();
    formats_->clear();
    const auto& catalogue = ColorFormats::shared();
    for (const auto& format : catalogue.formats) {
        const auto text = catalogue.clipboardString(value, format->name);
        auto* item = new QListWidgetItem(QString::fromStdString(format->name + "\n" + text), formats_);
        item->setData(Qt::UserRole, QString::fromStdString(text));
        item->setData(Qt::AccessibleTextRole, QString::fromStdString(format->name + ": " + text));
        item->setToolTip("Copy " + QString::fromStdString(text));
    }
    if (current >= 0 && current < formats_->count()) formats_->setCurrentRow(current);
}

}  // namespace kro
