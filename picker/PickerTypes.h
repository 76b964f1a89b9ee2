#pragma once
// The small enumerations of a picking session.
#include <optional>
#include <string>
#include <vector>

#include "platform/ColorValue.h"

namespace kro {

// Where a standard pick goes.
enum class PickerSource { standard, colorpanel, contrastForeground, contrastBackground, inspector };
// The kind of session.
enum class PickerMode { standard, multiple, plugin, contrast };
// The colour slot of the frontmost design application that a plugin-mode pick goes to.
enum class PickerPlugin { primary, secondary };
enum class PickerConfirmTrigger { mouse, enter, space };
// The third argument of colour delivery: the clipboard only, or also the frontmost application's slot.
enum class ColorDeliveryTarget { clipboard = 0, primary = 1, secondary = 2 };

std::string text(PickerMode mode);
std::string text(PickerPlugin plugin);

class PickerDelegate {
public:
    virtual ~PickerDelegate() = default;
    virtual void pickerDidPick(const ColorValue& color, PickerSource source) = 0;
    virtual void pickerDidSend(const ColorValue& color, PickerPlugin destination) = 0;
    virtual void pickerDidPick(const std::vector<ColorValue>& colors) = 0;
    // A contrast session ended on Return with its two colours. A delegate without a contrast checker gets
    // the session's list as the close leaves it: empty.
    virtual void pickerDidPickContrast(const ColorValue& /*foreground*/, const ColorValue& /*background*/) {
        pickerDidPick(std::vector<ColorValue>{});
    }
    // The session needs the permission to control the keyboard and does not have it.
    virtual void pickerNeedsAccessibility() {}
    // A session ended, after its pick was delivered or without one.
    virtual void pickerDidClose() {}
};

}  // namespace kro
