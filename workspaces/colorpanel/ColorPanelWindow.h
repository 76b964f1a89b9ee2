#pragma once
// The colour panel: one colour, shown as a swatch and as text in the panel's own format
// (`Settings.colorPanelFormat`, any format of the catalogue), edited by RGB, HSB and alpha sliders or a hex
// entry, picked from the screen, and used: copied in the panel's format, or delivered as the primary or
// secondary colour through the one delivery path.
#include <QWidget>
#include <array>
#include <memory>

#include "platform/ColorValue.h"
#include "platform/WindowControllers.h"
#include "workspaces/common/Observers.h"

class QComboBox;
class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;

namespace kro {

class AppDelegate;
class ColorSwatch;
class HexEntry;

class ColorPanelWindow : public QWidget {
public:
    // The sliders, in the order shown.
    enum Channel { red, green, blue, hue, saturation, brightness, alpha, channelCount };

    explicit ColorPanelWindow(AppDelegate* delegate, QWidget* parent = nullptr);

    void setColor(const ColorValue& color);
    const ColorValue& color() const { return color_; }
    // The colour in the panel's format.
    QString formattedText() const;
    // Sets one channel from its slider's scale (0–255 for RGB, degrees for hue, percent for the others).
    void setChannel(Channel channel, int value);
    QSpinBox* channelField(Channel channel) const { return channels_[channel].field; }
    QComboBox* formatMenu() const { return format_; }
    HexEntry* hexEntry() const { return hex_; }

    void copyText();
    void use(bool primary);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct ChannelRow {
        QSlider* slider = nullptr;
        QSpinBox* field = nullptr;
    };
    void fillFormatMenu();
    void refresh();

    AppDelegate* delegate_;
    ColorValue color_ = ColorValue::rgb(1, 1, 1);
    ColorSwatch* swatch_;
    QLabel* text_;
    QComboBox* format_;
    HexEntry* hex_;
    std::array<ChannelRow, channelCount> channels_;
    bool refreshing_ = false;
    Observers observers_;
};

class ColorPanelWindowController final : public WindowController {
public:
    explicit ColorPanelWindowController(AppDelegate* delegate) : delegate_(delegate) {}
    void show() override;
    void hide() override;
    void close() override;
    bool isVisible() const override;
    void takeColor(const ColorValue& color, int role) override;
    void showNear(const WindowController* other) override;
    ColorPanelWindow& window();

private:
    AppDelegate* delegate_;
    std::unique_ptr<ColorPanelWindow> window_;
};

}  // namespace kro
