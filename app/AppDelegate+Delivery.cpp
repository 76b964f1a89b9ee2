// Picked-colour delivery: from a confirmed colour to the clipboard text, the status icon, the tooltip, the
// history and the selected palette. Every view that uses a colour goes through `copyColor`.
#include "app/AppDelegate.h"
#include "formats/ColorFormats.h"
#include "library/Preferences.h"
#include "library/Settings.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "picker/Sound.h"
#include "platform/Environment.h"

namespace kro {
namespace {

constexpr double kTooltipSeconds = 2.0;

// The palette that receives new colours: searched in the history, then the palettes.
PaletteRef selectedPalette(const User& user) {
    if (!user.paletteUUID) return nullptr;
    if (user.history->uuid == *user.paletteUUID) return user.history;
    for (const auto& palette : user.palettes) {
        if (palette->uuid == *user.paletteUUID) return palette;
    }
    return nullptr;
}

// Puts the colour at the head of the palette unless it is locked or holds the hex already.
bool insertAtHead(Palette& palette, const ColorRef& color) {
    if (palette.lock || palette.containsHex(color->hex)) return false;
    palette.colors.insert(palette.colors.begin(), color);
    return true;
}

}  // namespace

void AppDelegate::openPicker(PickerSource source) {
    if (appState != AppState::valid) {
        SHERLOG("The picker waits for a valid licence", SherlogLevel::info);
        return;
    }
    // Screen capture needs no permission on X11; without a display there is nothing to capture.
    if (!desktop_.screenCapture || !desktop_.pointer) {
        SHERLOG("The picker needs a display", SherlogLevel::error);
        return;
    }
    if (picker_->isOpen) return;
    if (menuWindowController) menuWindowController->hide();
    picker_->open(source, 0.05);
}

void AppDelegate::sendOutputToClipboard(bool clipboard, const std::string& output) {
    if (!clipboard) return;
    clipboards.insert(output);
    if (desktop_.clipboard) desktop_.clipboard->setText(output);
    SHERLOG("replace with: " + output, SherlogLevel::info);
}

void AppDelegate::copyColor(const ColorRef& color, bool clipboard, ColorDeliveryTarget target) {
    // The record keeps generic RGB numbers; read back in that space, the text matches the picked colour.
    const auto value = color->colorValue();
    clipboardColor = value;
    redrawStatusButton();
    if (target == ColorDeliveryTarget::clipboard) return deliverPlainly(value, clipboard);
    deliverToApplication(value, clipboard, target);
}

void AppDelegate::deliverPlainly(const ColorValue& value, bool clipboard) {
    sendOutputToClipboard(clipboard, ColorFormats::shared().clipboardString(value));
    const auto label = ColorFormats::shared().pickerString(value);
    env().mainQueue->post([this, label] { showStatusTooltip(label, kTooltipSeconds); });
}

void AppDelegate::pickerDidPick(const ColorValue& color, PickerSource source) {
    if (source == PickerSource::inspector) {
        if (Preferences::shared().playSounds()) Sound::playColor();
        // Without the library window the colour is dropped, silently.
        if (mainWindowController) mainWindowController->inspect(color);
        return;
    }
    if (source != PickerSource::standard) {
        Sound::playColor();
        // The colour panel takes its colour, the contrast checker one of its two; without the window the
        // colour is dropped.
        if (source == PickerSource::colorpanel) {
            if (colorPanelWindowController) colorPanelWindowController->takeColor(color, 0);
        } else if (contrastWindowController) {
            contrastWindowController->takeColor(color, source == PickerSource::contrastForeground ? 0 : 1);
        }
        return;
    }
    Sound::playColor();
    sendOutputToClipboard(true, ColorFormats::shared().clipboardString(color));
    clipboardColor = color;
    const auto picked = Color::make(color);

    auto user = User::shared();
    if (auto palette = selectedPalette(*user); palette && insertAtHead(*palette, picked)) {
        palette->trigger(false, true, false, false);
    }
    // A colour already in the history keeps its place, and no pipeline run follows. The history gets its own
    // record, so that no uuid is held twice in the library.
    if (insertAtHead(*user->history, picked->copy())) user->history->trigger(true, true, true, true);

    if (mainWindowController) mainWindowController->showNotice("Color Created");
    // Written a second time by the central path, with the same text.
    copyColor(picked, true, ColorDeliveryTarget::clipboard);
    Settings::shared().setColorSort(PaletteColorSort::none);
    if (pendingPick_) {
        pendingPick_->lines.push_back(pendingPick_->render(color));
        pendingPick_->pickedThisSession = true;
    }
}

void AppDelegate::pickerNeedsAccessibility() {
    showStatusTooltip("Kro cannot type in other applications on this display", kTooltipSeconds);
}

void AppDelegate::pickerDidPick(const std::vector<ColorValue>& colors) {
    if (!desktop_.popUpMenu) return;
    std::vector<PopUpMenuItem> items;
    items.push_back({"Create Palette", [this, colors] { menuItemDidPress(nullptr, colors); }});
    items.push_back({});
    for (const auto& palette : User::shared()->palettes) {
        if (!palette->name || palette->name->empty()) continue;
        items.push_back({*palette->name, [this, palette, colors] { menuItemDidPress(palette, colors); }});
    }
    const auto mouse = desktop_.pointer ? desktop_.pointer->location() : ScreenPoint{};
    desktop_.popUpMenu->popUp(std::move(items), {mouse.x, mouse.y + 10}, {});
}

void AppDelegate::pickerDidPickContrast(const ColorValue& foreground, const ColorValue& background) {
    if (!contrastWindowController) return PickerDelegate::pickerDidPickContrast(foreground, background);
    openContrastWindow(foreground, background);
}

void AppDelegate::menuItemDidPress(const PaletteRef& palette, const std::vector<ColorValue>& colors) {
    Sound::playPalette();
    auto user = User::shared();
    std::vector<ColorRef> made;
    for (const auto& value : colors) made.push_back(Color::make(value));
    if (palette) {
        if (palette->lock) return;
        for (const auto& color : made) insertAtHead(*palette, color);
        palette->trigger(false, true, false, false);
    } else {
        user->addPalette(Palette::make(made));
    }
    for (const auto& color : made) insertAtHead(*user->history, color->copy());
    user->history->trigger(true, true, true, true);
    Settings::shared().setColorSort(PaletteColorSort::none);
}

void AppDelegate::formatUpdated() {
    if (!clipboardColor) return;
    sendOutputToClipboard(true, ColorFormats::shared().clipboardString(*clipboardColor));
    redrawStatusButton();
}

}  // namespace kro
