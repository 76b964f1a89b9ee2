#include "workspaces/colorpanel/ColorPanelWindow.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>
#include <cmath>

#include "app/AppDelegate.h"
#include "formats/ColorFormats.h"
#include "library/Color.h"
#include "library/Notifications.h"
#include "library/Settings.h"
#include "platform/Environment.h"
#include "workspaces/common/HexEntry.h"
#include "workspaces/common/Swatch.h"
#include "workspaces/main/MainWindow.h"

namespace kro {
namespace {

struct ChannelInfo {
    const char* label;
    const char* accessible;
    int maximum;
    const char* suffix;
};
constexpr ChannelInfo kChannels[] = {
    {"R", "Red", 255, ""},          {"G", "Green", 255, ""},          {"B", "Blue", 255, ""},
    {"H", "Hue", 360, "°"},         {"S", "Saturation", 100, "%"},    {"B", "Brightness", 100, "%"},
    {"A", "Opacity", 100, "%"},
};

int scaled(double unit, int maximum) { return int(std::lround(std::clamp(unit, 0.0, 1.0) * maximum)); }

}  // namespace

ColorPanelWindow::ColorPanelWindow(AppDelegate* delegate, QWidget* parent)
    : QWidget(parent, Qt::Window),
      delegate_(delegate),
      swatch_(new ColorSwatch(this)),
      text_(new QLabel(this)),
      format_(new QComboBox(this)),
      hex_(new HexEntry(this)) {
    setWindowTitle("Kro Color Panel");
    setAccessibleName("Color panel");
    auto* layout = new QVBoxLayout(this);

    auto* top = new QHBoxLayout();
    swatch_->setMinimumSize(72, 72);
    swatch_->setAccessibleName("Color");
    top->addWidget(swatch_);
    auto* side = new QVBoxLayout();
    text_->setAccessibleName("Color in the panel's format");
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text_->setWordWrap(true);
    QFont mono = text_->font();
    mono.setFamily("monospace");
    text_->setFont(mono);
    side->addWidget(text_);
    format_->setAccessibleName("Format of the panel");
    format_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    format_->setMinimumContentsLength(14);
    connect(format_, &QComboBox::activated, this, [this](int index) {
        Settings::shared().setColorPanelFormat(format_->itemText(index).toStdString());
        // The panel's format menu announces a format change, as the catalogue's own edits do.
        env().notifications->post(Notifications::colorFormatUpdated);
    });
    side->addWidget(format_);
    hex_->setAccessibleName("Hex value");
    hex_->onColor = [this](const ColorValue& color) { setColor(color); };
    side->addWidget(hex_);
    top->addLayout(side, 1);
    layout->addLayout(top);

    auto* grid = new QGridLayout();
    for (int channel = 0; channel < channelCount; ++channel) {
        const auto& info = kChannels[channel];
        auto& row = channels_[size_t(channel)];
        auto* label = new QLabel(info.label, this);
        row.slider = new QSlider(Qt::Horizontal, this);
        row.slider->setRange(0, info.maximum);
        row.slider->setAccessibleName(QString(info.accessible) + " slider");
        row.field = new QSpinBox(this);
        row.field->setRange(0, info.maximum);
        row.field->setSuffix(info.suffix);
        row.field->setAccessibleName(info.accessible);
        label->setBuddy(row.field);
        const auto which = Channel(channel);
        connect(row.slider, &QSlider::valueChanged, this, [this, which](int value) {
            if (!refreshing_) setChannel(which, value);
        });
        connect(row.field, &QSpinBox::valueChanged, this, [this, which](int value) {
            if (!refreshing_) setChannel(which, value);
        });
        // A gap between the RGB rows, the HSB rows and alpha.
        const int gridRow = channel + (channel >= hue) + (channel >= alpha);
        grid->addWidget(label, gridRow, 0);
        grid->addWidget(row.slider, gridRow, 1);
        grid->addWidget(row.field, gridRow, 2);
    }
    grid->setRowMinimumHeight(3, 6);
    grid->setRowMinimumHeight(7, 6);
    grid->setColumnStretch(1, 1);
    layout->addLayout(grid);

    auto* actions = new QHBoxLayout();
    auto* pick = new QPushButton("&Pick", this);
    pick->setAccessibleName("Pick a color from the screen");
    connect(pick, &QPushButton::clicked, this, [this] {
        if (delegate_) delegate_->openPicker(PickerSource::colorpanel);
    });
    auto* copy = new QPushButton("Copy", this);
    copy->setAccessibleName("Copy the color in the panel's format");
    connect(copy, &QPushButton::clicked, this, [this] { copyText(); });
    auto* primary = new QPushButton("&Use as Primary", this);
    primary->setAccessibleName("Use the color as the primary color");
    connect(primary, &QPushButton::clicked, this, [this] { use(true); });
    auto* secondary = new QPushButton("Use as &Secondary", this);
    secondary->setAccessibleName("Use the color as the secondary color");
    connect(secondary, &QPushButton::clicked, this, [this] { use(false); });
    actions->addWidget(pick);
    actions->addStretch(1);
    actions->addWidget(copy);
    actions->addWidget(primary);
    actions->addWidget(secondary);
    layout->addLayout(actions);

    observers_.on({Notifications::colorFormatUpdated, Notifications::settingsUpdated}, [this] { refresh(); });
    if (delegate_ && delegate_->clipboardColor) color_ = *delegate_->clipboardColor;
    refresh();
    // The panel opens ready for a hex value to be typed; the buttons answer Alt and their underlined letter.
    hex_->setFocus(Qt::OtherFocusReason);
}

void ColorPanelWindow::setColor(const ColorValue& color) {
    color_ = color.usingColorSpace(ColorSpace::sRGB());
    refresh();
}

void ColorPanelWindow::setChannel(Channel channel, int value) {
    const double unit = double(value) / kChannels[channel].maximum;
    const auto& c = color_;
    switch (channel) {
        case red: color_ = ColorValue::rgb(unit, c.green(), c.blue(), c.alpha()); break;
        case green: color_ = ColorValue::rgb(c.red(), unit, c.blue(), c.alpha()); break;
        case blue: color_ = ColorValue::rgb(c.red(), c.green(), unit, c.alpha()); break;
        case hue: color_ = ColorValue::hsb(std::min(unit, 359.999 / 360), c.saturation(), c.brightness(), c.alpha()); break;
        case saturation: color_ = ColorValue::hsb(c.hue(), unit, c.brightness(), c.alpha()); break;
        case brightness: color_ = ColorValue::hsb(c.hue(), c.saturation(), unit, c.alpha()); break;
        case alpha: color_ = ColorValue::rgb(c.red(), c.green(), c.blue(), unit); break;
        case channelCount: break;
    }
    refresh();
}

QString ColorPanelWindow::formattedText() const {
    const auto& name = Settings::shared().colorPanelFormat();
    const auto& catalogue = ColorFormats::shared();
    // A name the catalogue no longer has falls back to the selected format.
    const bool known = name && catalogue.format(*name);
    return QString::fromStdString(catalogue.clipboardString(color_, known ? name : std::nullopt));
}

void ColorPanelWindow::copyText() {
    if (delegate_) delegate_->sendOutputToClipboard(true, formattedText().toStdString());
}

void ColorPanelWindow::use(bool primary) {
    if (!delegate_) return;
    delegate_->copyColor(Color::make(color_), true, primary ? ColorDeliveryTarget::primary : ColorDeliveryTarget::secondary);
}

void ColorPanelWindow::fillFormatMenu() {
    const auto& catalogue = ColorFormats::shared();
    QStringList names;
    for (const auto& item : catalogue.formats) names << QString::fromStdString(item->name);
    const auto& chosen = Settings::shared().colorPanelFormat();
    const QString current = QString::fromStdString(chosen && catalogue.format(*chosen) ? *chosen : catalogue.selectedFormatName);
    QStringList shown;
    for (int i = 0; i < format_->count(); ++i) shown << format_->itemText(i);
    if (shown != names) {
        format_->clear();
        format_->addItems(names);
    }
    format_->setCurrentIndex(format_->findText(current));
}

void ColorPanelWindow::refresh() {
    refreshing_ = true;
    fillFormatMenu();
    swatch_->setColor(displayColor(color_));
    text_->setText(formattedText());
    hex_->showColor(color_);
    const double units[channelCount] = {color_.red(),        color_.green(),      color_.blue(), color_.hue(),
                                        color_.saturation(), color_.brightness(), color_.alpha()};
    for (int channel = 0; channel < channelCount; ++channel) {
        const int value = scaled(units[channel], kChannels[channel].maximum);
        channels_[size_t(channel)].slider->setValue(value);
        channels_[size_t(channel)].field->setValue(value);
    }
    refreshing_ = false;
}

void ColorPanelWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copyText();
    } else if (event->matches(QKeySequence::Close) || event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

ColorPanelWindow& ColorPanelWindowController::window() {
    if (!window_) window_ = std::make_unique<ColorPanelWindow>(delegate_);
    return *window_;
}

void ColorPanelWindowController::show() { showNear(nullptr); }

void ColorPanelWindowController::showNear(const WindowController* other) {
    auto& panel = window();
    if (const auto* main = dynamic_cast<const MainWindowController*>(other); main && !panel.isVisible()) {
        // Beside the library window's right edge, else its left, kept on its screen.
        const QRect frame = const_cast<MainWindowController*>(main)->window().frameGeometry();
        const QScreen* screen = QGuiApplication::screenAt(frame.center());
        const QRect area = screen ? screen->availableGeometry() : QRect(frame.topLeft(), QSize(1920, 1080));
        panel.adjustSize();
        int x = frame.right() + 8;
        if (x + panel.width() > area.right()) x = std::max(area.left(), frame.left() - panel.width() - 8);
        panel.move(x, std::clamp(frame.top(), area.top(), std::max(area.top(), area.bottom() - panel.height())));
    }
    panel.show();
    panel.raise();
    panel.activateWindow();
}

void ColorPanelWindowController::hide() {
    if (window_) window_->hide();
}

void ColorPanelWindowController::close() {
    if (window_) window_->close();
}

bool ColorPanelWindowController::isVisible() const { return window_ && window_->isVisible(); }

void ColorPanelWindowController::takeColor(const ColorValue& color, int) {
    window().setColor(color);
    show();
}

}  // namespace kro
