#pragma once
// Inkscape 1.2 and later, through its application actions on the session bus ("org.inkscape.Inkscape").
// Setting runs `object-set-property` on the selection. Reading runs `copy`, after which Inkscape's clipboard
// document carries the selection's style; where the action cannot be reached, Ctrl+C does the copy instead.
#include <functional>
#include <optional>
#include <string>

#include "bridges/Bridge.h"
#include "platform/Desktop.h"

namespace kro {

namespace InkscapeActions {
// org.gtk.Actions.Activate of an application action, with its string parameter when it takes one.
DBusCall activate(const std::string& action, const std::optional<std::string>& parameter = std::nullopt);
// Whether a bus error says the action is not there (no Inkscape on the bus, or one without the action), as
// against one that does not answer.
bool isUnreachable(const std::string& error);
// "fill,#rrggbb" for the primary colour, "stroke,#rrggbb" for the secondary.
DBusCall setProperty(PickerPlugin slot, const Rgb8& color);
// The selection's fill (primary) or stroke (secondary) in the style Inkscape puts on its clipboard document,
// as "#rgb", "#rrggbb" or a CSS colour name; nothing for "none", a gradient or any other text.
std::optional<ColorValue> readClipboardStyle(const std::string& svg, PickerPlugin slot);
}  // namespace InkscapeActions

class InkscapeBridge final : public Bridge {
public:
    // `simulateCopy` types Ctrl+C into a window of Inkscape, for when its actions cannot be reached; false
    // when there is no such window.
    InkscapeBridge(SessionBus& bus, const Clipboard* clipboard, std::function<bool()> simulateCopy)
        : bus_(bus), clipboard_(clipboard), simulateCopy_(std::move(simulateCopy)) {}
    void getColor(PickerPlugin slot, GetDone done) override;
    void setColor(PickerPlugin slot, const ColorValue& color, SetDone done) override;

private:
    // Reads the clipboard until Inkscape's document is on it, for a short while.
    void readClipboard(PickerPlugin slot, const Answer<std::vector<ColorValue>>& finish, int attempt = 0);

    SessionBus& bus_;
    const Clipboard* clipboard_;
    std::function<bool()> simulateCopy_;
};

}  // namespace kro
