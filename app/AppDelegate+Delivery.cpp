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
    if (target != ColorDeliveryTarget::clipboard) {
        // Sending to a design application needs its bridge; without one the colour takes the plain road.
        SHERLOG("No design application takes the colour; it goes to the clipboard", SherlogLevel::debug);
    }
    sendOutputToClipboard(clipboard, ColorFormats::shared().clipboardString(value));
    const auto label = ColorFormats::shared().pickerString(value);
    env().mainQueue->post([this, label] { showStatusTooltip(label, kTooltipSeconds); });
}

void AppDelegate::pickerDidPick(const ColorValue& color, PickerSource source) {
    if (source != PickerSource::standard) {
        Sound::playColor();
        // The colour panel, the contrast checker and the inspector take it once their windows exist.
        SHERLOG("No window takes a pick for this source yet; the colour is dropped", SherlogLevel::debug);
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

    // Written a second time by the central path, with the same text.
    copyColor(picked, true, ColorDeliveryTarget::clipboard);
    Settings::shared().setColorSort(PaletteColorSort::none);
    if (pendingPick_) {
        pendingPick_->lines.push_back(pendingPick_->render(color));
        pendingPick_->pickedThisSession = true;
    }
}

void AppDelegate::pickerDidSend(const ColorValue& color, PickerPlugin destination) {
    sendOutputToClipboard(true, ColorFormats::shared().clipboardString(color));
    clipboardColor = color;
    Sound::playColor();
    SHERLOG("No design application bridge for the " + text(destination) + " colour", SherlogLevel::debug);
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
