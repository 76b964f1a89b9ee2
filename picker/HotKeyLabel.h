#pragma once
// Labels of key combinations. The glyph form ("⇧⌘ P") is what the conflict check compares; the words form
// ("Ctrl+Shift+P") is what people read on Linux.
#include <functional>
#include <optional>
#include <string>

namespace kro {

// The fixed label of a key code, else the label the current keyboard layout gives (when a layout lookup is
// installed), else nothing.
std::optional<std::string> keyLabel(int code);
// Installed by the desktop side: the text the current layout types for a code outside the fixed table.
void setKeyboardLayoutLabel(std::function<std::optional<std::string>(int code)> lookup);

// Modifier glyphs in the order ⇧ ⌃ ⌥ ⌘, one blank, the key's label ("" when the key has none).
std::string shortcutLabel(int flags, int code);
// "Ctrl+Super+Alt+Shift+P": the primary modifier first, as desktop menus show it.
std::string readableShortcutLabel(int flags, int code);

}  // namespace kro
