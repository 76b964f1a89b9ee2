#pragma once
// One picking session at a time: the loupe follows the pointer, magnifies the screen, reads pointer,
// wheel and gesture events, and hands the confirmed colour to its delegate. One object lives as long as the
// agent and is reused for every session. Coordinates are global points, origin at the top left.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "formats/SmartItems.h"
#include "picker/LoupeLayout.h"
#include "picker/PickerImage.h"
#include "picker/PickerTutorial.h"
#include "picker/PickerTypes.h"
#include "platform/KeySimulator.h"
#include "platform/LoupeWindow.h"
#include "platform/PointerControl.h"
#include "platform/PopUpMenu.h"
#include "platform/ScreenCapture.h"
#include "platform/Workspace.h"

namespace kro {

struct PickerServices {
    LoupeWindow* window = nullptr;
    PointerControl* pointer = nullptr;
    ScreenCapture* screenCapture = nullptr;
    Workspace* workspace = nullptr;
    PopUpMenu* menu = nullptr;
    // Its availability is the permission that plugin mode needs.
    KeySimulator* keySimulator = nullptr;
};

inline constexpr int kPickerSizeMin = 120, kPickerSizeMax = 360;
inline constexpr int kPickerZoomMin = 4, kPickerZoomMax = 20;
inline constexpr size_t kMultipleColorsMax = 20;
// Half the side of the loupe's square window, in interface pixels.
inline constexpr int kLoupeHalfSide = 400;

// The loupe's window: a square of 800 interface pixels, in device pixels at the screen's interface scale,
// whose middle device pixel is the one under the pointer. It is not kept on screen: at an edge part of it
// lies outside.
ScreenRect loupeFrame(ScreenPoint mouse, double interfaceScale);

class Picker : public PickerImageDelegate {
public:
    explicit Picker(PickerServices services);

    void open(PickerSource source, double delay, std::function<void(bool)> completion = {});
    void close(bool resetMode, std::function<void()> completion = {});
    void confirm(PickerConfirmTrigger trigger);
    // Moves the real cursor relative to where it is; positive `dy` is down the screen.
    void move(double dx, double dy);
    void update();
    void setPickerSize(int value);
    void setPickerZoom(int value);
    void handle(const PointerEvent& event);
    void pickerImageDidSample(const ColorValue& color, const std::shared_ptr<SmartProfileItem>& profile) override;

    // The place of the badge and the overlay, 0 to 8: rows top, middle, bottom; columns left, middle, right.
    int screenPosition() const;
    // The mode menu at the pointer.
    void showModeMenu();
    // Dismisses the hint on show after `seconds`, then runs `completion`.
    void dismissHint(double seconds, std::function<void()> completion = {});
    void showHint(PickerHint hint, double delay);
    // The text the overlay shows: the colour in the picker format, and its name when that is on.
    std::string overlayText() const;
    // Where that text goes in the loupe's view, kept on the screen under the pointer.
    ViewBox overlayBox() const;

    PickerImage pickerImage;
    PickerTutorial pickerTutorial;
    // Borders and badge state the views draw.
    bool borderResetMode = false;
    std::string profileBadge;

    bool isOpen = false;
    int pickerSize = 180;
    int pickerZoom = 8;
    PickerSource source = PickerSource::standard;
    PickerMode mode = PickerMode::standard;
    PickerPlugin destination = PickerPlugin::primary;
    std::optional<ColorValue> color;
    std::optional<std::string> colorName;
    std::vector<ColorValue> colors;
    double deltaSize = 180;
    double deltaZoom = 8;
    double lastX = 0;
    double lastY = 0;
    bool precisionMode = false;
    bool canShowOptions = false;
    bool initialShowCompleted = false;
    double alpha = 0;
    int showGeneration = 0;
    std::shared_ptr<SmartProfileItem> smartProfileItem;
    PickerDelegate* pickerDelegate = nullptr;
    // The PNG icon of the design application in front, when it has a bridge and an icon: the mode menu then
    // offers "Send to software".
    std::function<std::optional<std::string>()> pluginIcon;

private:
    void show();
    void reveal(int generation, std::function<void(bool)> completion);
    void setPrecisionMode(bool value);
    void mouseMoved(const PointerEvent& event);
    void flagsChanged(const PointerEvent& event);
    void scrollWheel(const PointerEvent& event);
    void magnify(const PointerEvent& event);
    void smartMagnify(const PointerEvent& event);
    void appendColor();
    void afterConfirm();
    void showHintAfterCount();
    void armPrecisionTimer();
    std::optional<ScreenInfo> screenUnderPointer() const;
    double interfaceScale() const;

    PickerServices services_;
    int precisionTimerGeneration_ = 0;
};

}  // namespace kro
