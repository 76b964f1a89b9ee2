#pragma once
// One keyboard shortcut of the program: which action, its combination, and where it is active.
// Masks keep their stored meaning by role: 0x100000 is the primary modifier (Ctrl on Linux), 0x80000 Alt,
// 0x40000 Super, 0x20000 Shift. Codes are positional virtual key codes (0 is the key labelled A on a US board).
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Json.h"

namespace kro {

enum class HotKeyIdentifier {
    unknown, quitApp, openPicker, openColorPanel, openStatusMenu, openMainMenu, openContrastChecker,
    getPrimaryColor, getSecondaryColor, pickColorEnter, pickColorSpace, closePicker,
    moveLeft1px, moveUp1px, moveRight1px, moveDown1px, moveLeft10px, moveUp10px, moveRight10px, moveDown10px,
    increasePickerSize, decreasePickerSize, increasePickerZoom, decreasePickerZoom, toggleColorDock,
};
inline constexpr int kHotKeyIdentifierCount = 25;
std::string text(HotKeyIdentifier identifier);
std::optional<HotKeyIdentifier> hotKeyIdentifierFromText(const std::string& value);
// The identifier of a raw value; `unknown` for one out of range.
HotKeyIdentifier hotKeyIdentifier(int rawValue);

enum class HotKeyGroupIdentifier { unknown, general, picker, zoom_size, color_dock, extensions };
std::string text(HotKeyGroupIdentifier group);
std::optional<HotKeyGroupIdentifier> hotKeyGroupFromText(const std::string& value);
// The group's heading in the preferences; "" for `unknown`.
std::string title(HotKeyGroupIdentifier group);

enum class HotKeyState { enabled, disabled };

namespace HotKeyFlags {
inline constexpr int shift = 0x20000;
inline constexpr int control = 0x40000;  // Super on Linux
inline constexpr int option = 0x80000;   // Alt on Linux
inline constexpr int command = 0x100000; // Ctrl on Linux: the primary modifier
inline constexpr int mask = shift | control | option | command;
}  // namespace HotKeyFlags

struct HotKey {
    HotKeyIdentifier id = HotKeyIdentifier::unknown;
    std::string name;
    int index = 0;
    int flags = 0;
    int code = 0;
    bool readonly = false;
    bool global = false;
    bool visible = true;
    HotKeyState state = HotKeyState::enabled;
    bool deleted = false;
    HotKeyGroupIdentifier group = HotKeyGroupIdentifier::unknown;

    bool enabled() const { return state == HotKeyState::enabled; }
    Json toJson() const;
    // Strict: every field must be there with its type and a known value; throws JsonDecodeError otherwise.
    static HotKey fromJson(const Json& json);
    bool operator==(const HotKey&) const = default;
};

enum class HotKeyUsedState { system, app };

// Why a combination cannot be taken.
struct HotKeyUsed {
    std::string reason;
    std::string shortcut;
    HotKeyUsedState state = HotKeyUsedState::system;
    bool operator==(const HotKeyUsed&) const = default;
};

// A whole table as JSON text, and back. Decoding throws JsonDecodeError on anything but an array of records.
std::string encodeHotKeys(const std::vector<HotKey>& hotKeys);
std::vector<HotKey> decodeHotKeys(std::string_view bytes);

}  // namespace kro
