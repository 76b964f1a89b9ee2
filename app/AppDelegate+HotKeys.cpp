// Shortcuts: the global set at launch, and what each action does when its combination is pressed.
#include "app/AppDelegate.h"
#include "library/Preferences.h"
#include "library/Sherlog.h"
#include "picker/HotKeys.h"

namespace kro {
namespace {

constexpr double kHintFade = 0.25;

}  // namespace

void AppDelegate::registerShortcuts() {
    auto& hotKeys = HotKeys::shared();
    if (desktop_.hotKeyCenter) desktop_.hotKeyCenter->unregisterAll();
    hotKeys.setHotKeyCenter(desktop_.hotKeyCenter);
    hotKeys.setDelegate([this](HotKeyIdentifier identifier) { hotKeyDidPress(identifier); });
    hotKeys.registerGlobalKeys();
    picker_->pickerDelegate = this;
}

void AppDelegate::hotKeyDidPress(HotKeyIdentifier identifier) {
    SHERLOG("identifier: " + text(identifier), SherlogLevel::debug);
    auto& picker = *picker_;
    // While the hint of a multiple or contrast session is on show, it fades out before the action.
    const auto afterHint = [&picker](std::function<void()> action) {
        const auto hint = picker.pickerTutorial.hint;
        if (hint == PickerHint::multiple || hint == PickerHint::contrast) {
            picker.dismissHint(kHintFade, std::move(action));
        } else {
            action();
        }
    };
    switch (identifier) {
        case HotKeyIdentifier::unknown: break;
        case HotKeyIdentifier::quitApp: quit(); break;
        case HotKeyIdentifier::openPicker: openPicker(PickerSource::standard); break;
        case HotKeyIdentifier::openColorPanel: openColorPanel(); break;
        case HotKeyIdentifier::openContrastChecker: openContrastWindowWithRandomColors(); break;
        case HotKeyIdentifier::openStatusMenu: openMenuWindow(); break;
        case HotKeyIdentifier::openMainMenu: openMainWindow(); break;
        // Either colour read is delivered to the application's primary slot.
        case HotKeyIdentifier::getPrimaryColor: getApplicationColor(PickerPlugin::primary, ColorDeliveryTarget::primary); break;
        case HotKeyIdentifier::getSecondaryColor: getApplicationColor(PickerPlugin::secondary, ColorDeliveryTarget::primary); break;
        case HotKeyIdentifier::pickColorEnter:
            afterHint([&picker] { picker.confirm(PickerConfirmTrigger::enter); });
            break;
        case HotKeyIdentifier::pickColorSpace:
            afterHint([&picker] { picker.confirm(PickerConfirmTrigger::space); });
            break;
        case HotKeyIdentifier::closePicker:
            afterHint([&picker] { picker.close(true); });
            break;
        case HotKeyIdentifier::moveLeft1px: picker.move(-1, 0); break;
        case HotKeyIdentifier::moveRight1px: picker.move(1, 0); break;
        case HotKeyIdentifier::moveUp1px: picker.move(0, -1); break;
        case HotKeyIdentifier::moveDown1px: picker.move(0, 1); break;
        case HotKeyIdentifier::moveLeft10px: picker.move(-10, 0); break;
        case HotKeyIdentifier::moveRight10px: picker.move(10, 0); break;
        case HotKeyIdentifier::moveUp10px: picker.move(0, -10); break;
        case HotKeyIdentifier::moveDown10px: picker.move(0, 10); break;
        case HotKeyIdentifier::increasePickerSize:
            if (picker.pickerSize <= 359) picker.setPickerSize(picker.pickerSize + 60);
            break;
        case HotKeyIdentifier::decreasePickerSize:
            if (picker.pickerSize >= 121) picker.setPickerSize(picker.pickerSize - 60);
            break;
        case HotKeyIdentifier::increasePickerZoom:
            if (picker.pickerZoom <= 19) picker.setPickerZoom(picker.pickerZoom + 4);
            break;
        case HotKeyIdentifier::decreasePickerZoom:
            if (picker.pickerZoom >= 5) picker.setPickerZoom(picker.pickerZoom - 4);
            break;
        case HotKeyIdentifier::toggleColorDock:
            Preferences::shared().setDockVisible(!Preferences::shared().dockVisible());
            applyDockState();
            break;
    }
    // A wheel turned next continues from the size and zoom as they now stand.
    picker.deltaSize = picker.pickerSize;
    picker.deltaZoom = picker.pickerZoom;
}

}  // namespace kro
